#pragma once

#include "Engine/EngineRig.h"

#include <QtTest/QtTest>

Q_DECLARE_METATYPE(Source)

// What the engine's test tables have in common.
namespace EngineCases {

using Ids = std::initializer_list<const char*>;

// What the tests know of a source.
struct SourceCase
{
    const char* pszRow;
    Source source;
    int iType;           // of its records
    int iLimit;          // transfers at a time
    const char* pszName; // in the host's operations

    QString Start(const char* pszId) const { return Operation("Start", pszId); }
    QString Stop(const char* pszId) const { return Operation("Stop", pszId); }

private:
    QString Operation(const char* pszVerb, const char* pszId) const
    {
        return QString::fromUtf8(pszVerb) + QString::fromUtf8(pszName) + QStringLiteral("RecordDownload ") +
               QString::fromUtf8(pszId);
    }
};

} // namespace EngineCases

Q_DECLARE_METATYPE(EngineCases::SourceCase)

namespace EngineCases {

inline const SourceCase SourceCases[] = {{"cloud", Source::Cloud, 0, 3, "Cloud"},
                                         {"device", Source::Device, 1, 2, "Device"},
                                         {"IOT LAN", Source::IOTLan, 2, 1, "IOTLan"},
                                         {"LAN module", Source::LanModule, 3, 1, "LanModule"}};

// A row for each source, in the column "of".
inline void AddSourceRows()
{
    QTest::addColumn<SourceCase>("of");
    for (const SourceCase& of : SourceCases)
        QTest::newRow(of.pszRow) << of;
}

// Answers every cover picture as failed, so that cloud tasks go on like the others.
inline void NoPictures(FakeWorld& world)
{
    world.Pictures().FailAll();
}

// Sends one list of tasks of that source, made by the rig.
inline void SendTasks(EngineRig& rig, Source source, const QStringList& ids)
{
    const int iType = SourceCases[static_cast<int>(source)].iType;
    rig.Send("EventNotifyDownloadRecordList", {rig.StreamTyped(iType, ids), iType});
}

inline void SendTasks(EngineRig& rig, Source source, Ids ids)
{
    SendTasks(rig, source, Texts(ids));
}

// The target paths of the announced tasks, "~" for the world's folder.
inline QStringList Paths(EngineRig& rig, Ids ids)
{
    QStringList paths;
    for (const char* pszId : ids) {
        const DownloadRecordInfoPtr pTask = rig.Task(pszId);
        paths.append(pTask ? pTask->strDownloadPath : QStringLiteral("no such task"));
    }
    return paths.replaceInStrings(rig.World().Folder(), QStringLiteral("~"));
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
