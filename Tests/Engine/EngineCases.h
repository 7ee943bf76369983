#pragma once

#include "Engine/EngineRig.h"

#include <QtTest/QtTest>

Q_DECLARE_METATYPE(Source)

// What the engine's test tables have in common.
namespace EngineCases {

using Ids = std::initializer_list<const char*>;

// Answers every cover picture as failed, so that cloud tasks go on like the others.
inline void NoPictures(FakeWorld& world)
{
    world.Pictures().FailAll();
}

// Sends one list of tasks of that source, made by the rig.
inline void SendTasks(EngineRig& rig, Source source, const QStringList& ids)
{
    const auto sendAs = [&](int iType, auto make) {
        std::vector<decltype(make(""))> records;
        for (const QString& strId : ids)
            records.push_back(make(strId.toUtf8().constData()));
        rig.SendList(iType, records);
    };
    switch (source) {
    case Source::Cloud:
        sendAs(0, [&](const char* pszId) { return rig.Cloud(pszId); });
        break;
    case Source::Device:
        sendAs(1, [&](const char* pszId) { return rig.Device(pszId); });
        break;
    case Source::IOTLan:
        sendAs(2, [&](const char* pszId) { return rig.IOTLan(pszId); });
        break;
    case Source::LanModule:
        sendAs(3, [&](const char* pszId) { return rig.LanModule(pszId); });
        break;
    }
}

inline void SendTasks(EngineRig& rig, Source source, Ids ids)
{
    SendTasks(rig, source, Texts(ids));
}

// What the client and the panel were told and what the host was asked, in order: signals whole, the other lines cut
// after their second word.
inline QStringList Told(EngineRig& rig)
{
    QStringList told;
    for (const QString& strLine : rig.Calls().Lines()) {
        const bool bWhole = strLine.startsWith(QLatin1String("Signal"));
        told.append(bWhole ? strLine : strLine.section(QLatin1Char(' '), 0, 1));
    }
    return told;
}

// The payloads of the state events, with "~" for the world's folder.
inline QStringList StateEvents(EngineRig& rig)
{
    QStringList events = rig.World().Bus().Texts("EventNotifyDownloadRecordStates");
    return events.replaceInStrings(rig.World().Folder(), QStringLiteral("~"));
}

// The files of the world's folder among those names.
inline QStringList FilesLeft(EngineRig& rig, Ids names)
{
    QStringList left;
    for (const char* pszName : names) {
        if (rig.World().HasFile(pszName))
            left.append(QString::fromUtf8(pszName));
    }
    return left;
}

// Runs `action` inside the first call with that prefix.
inline void Once(CallList& calls, const char* pszPrefix, const std::function<void()>& action)
{
    const auto pDone = std::make_shared<bool>(false);
    calls.WhenAdded(pszPrefix, [pDone, action] {
        if (!*pDone) {
            *pDone = true;
            action();
        }
    });
}

// The tasks that the panel holds under those ids.
inline QList<DownloadRecordInfoPtr> Rows(const EngineRig& rig, Ids ids)
{
    QList<DownloadRecordInfoPtr> rows;
    for (const char* pszId : ids)
        rows.append(rig.Task(pszId));
    return rows;
}

} // namespace EngineCases
