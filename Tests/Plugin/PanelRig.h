#pragma once

#include "DownloadWidget/DownloadItem.h"
#include "DownloadWidget/DownloadWidget.h"
#include "Engine/EngineRig.h"
#include "KXGui/GraphicsGridView.h"
#include "KXGui/KXSvgPixmap.h"

#include <QtCore/QMutex>
#include <QtCore/QWaitCondition>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedWidget>

// The panel in a fake world, driven from outside: by events, by what host threads report, by the mouse. Its rows are
// found through its view. Cloud tasks are held no longer than one turn of the event loop: their covers fail.
class PanelRig
{
public:
    static constexpr QPoint DeleteButton{565, 41};
    static constexpr QPoint StateButton{515, 41};

    PanelRig()
    {
        ScriptedDisk::Reset();
        m_world.Pictures().FailAll();
        m_pPanel = std::make_unique<DownloadWidget>();
    }
    ~PanelRig() { Destroy(); }

    FakeWorld& World() { return m_world; }
    CallList& Calls() { return m_world.Calls(); }
    DownloadWidget& Panel() { return *m_pPanel; }
    void Destroy()
    {
        m_pPanel.reset();
        EngineRig::Settle();
    }

    template <class Widget>
    Widget& Find(const char* pszName)
    {
        return *m_pPanel->findChild<Widget*>(QString::fromUtf8(pszName));
    }
    QString TextOf(const char* pszLabel) { return Find<QLabel>(pszLabel).text(); }
    QString AllStartText() { return Find<QPushButton>("btnAllStart").text(); }
    GraphicsGridView& View() { return Find<GraphicsGridView>("downloadListView"); }
    DownloadItem* Row(const char* pszRecordId)
    {
        return dynamic_cast<DownloadItem*>(View().GetItem(QString::fromUtf8(pszRecordId)));
    }
    KXDownLoadList::DownloadRecordInfo& Record(const char* pszRecordId) { return *Row(pszRecordId)->Record(); }

    // A record with the path "~/<id>.mp4" and the begin time 2020-01-02 03:04:05.
    template <class RecordClass = KXDownLoadList::DownloadDeviceRecordInfo>
    std::shared_ptr<RecordClass> Made(const char* pszRecordId, int iType = 1)
    {
        auto pRecord = std::make_shared<RecordClass>();
        pRecord->iRecordType = iType;
        pRecord->strRecordId = QString::fromUtf8(pszRecordId);
        pRecord->strDeviceId = QStringLiteral("SN");
        pRecord->strDownloadPath = m_world.Path(pszRecordId) + QStringLiteral(".mp4");
        pRecord->strStartTime = QStringLiteral("20200102T030405");
        pRecord->lFileSize = 1000;
        pRecord->lReceivedSize = 0;
        return pRecord;
    }
    // Asks for the download of device records, as another part of the client does.
    void Send(std::initializer_list<const char*> recordIds)
    {
        std::vector<KXDownLoadList::DownloadDeviceRecordInfo> records;
        for (const char* pszRecordId : recordIds)
            records.push_back(*Made(pszRecordId));
        Send("EventNotifyDownloadRecordList", {EngineRig::Stream(records), 1});
    }
    void Send(const char* pszEvent, const QVariantList& payload)
    {
        m_world.Bus().Send(pszEvent, payload);
        EngineRig::Settle();
    }
    void RaiseState(const char* pszRecordId, int iCode)
    {
        m_world.Downloads().RaiseState(Source::Device, pszRecordId, iCode);
        EngineRig::Settle();
    }
    // Payloads of the count event, in order.
    QList<int> Counts()
    {
        QList<int> counts;
        for (const QVariantList& payload : m_world.Bus().Payloads("EventNotifyDownloadNumber"))
            counts.append(payload.value(0).type() == QVariant::Int ? payload[0].toInt() : -1);
        return counts;
    }

    void Show()
    {
        m_pPanel->show();
        EngineRig::Settle();
    }
    // A press on a row, by the view's viewport; the panel must be shown.
    void Press(const char* pszRecordId, const QPoint& pos)
    {
        const QPoint viewPos = View().mapFromScene(Row(pszRecordId)->mapToScene(pos));
        QTest::mouseClick(View().viewport(), Qt::LeftButton, Qt::NoModifier, viewPos);
        EngineRig::Settle();
    }
    void PressAllStart()
    {
        QTest::mouseClick(&Find<QPushButton>("btnAllStart"), Qt::LeftButton);
        EngineRig::Settle();
    }

    // The display state that the row's painting shows: the one of a row that was told so; -1 when it is not clear.
    int StateOf(const char* pszRecordId)
    {
        DownloadItem& row = *Row(pszRecordId);
        int iFound = -1;
        for (const int iState : {0, 1, 2, 3, 5}) {
            auto pCopy = Made(pszRecordId);
            DownloadItem reference(nullptr, {});
            reference.SetRecord(pCopy);
            reference.SetState(static_cast<RowState>(iState));
            pCopy->lReceivedSize = row.Record()->lReceivedSize;
            pCopy->lFileSize = row.Record()->lFileSize;
            pCopy->strFileName = row.Record()->strFileName;
            if (Painted(reference) != Painted(row))
                continue;
            if (iFound >= 0)
                return -1;
            iFound = iState;
        }
        return iFound;
    }

private:
    static QImage Painted(DownloadItem& row)
    {
        QImage image(610, 88, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        row.paint(&painter, nullptr, nullptr);
        return image.copy(160, 6, 420, 76); // beside the thumbnail, inside the frame of the focus
    }

    FakeWorld m_world;
    std::unique_ptr<DownloadWidget> m_pPanel;
};

// The panel's log lines of that function, or all, as "line function [module] level text".
inline QStringList PanelLog(FakeWorld& world, const char* pszFunction = "")
{
    QStringList lines;
    for (const LogEntry& entry : world.Log().Entries()) {
        if (entry.strFile != QLatin1String("Src/DownloadWidget/DownloadWidget"))
            continue;
        if (!entry.strFunction.startsWith(QLatin1String(pszFunction)))
            continue;
        QString strText = entry.strText;
        strText.replace(world.Folder(), QStringLiteral("~"));
        lines.append(QStringLiteral("%1 %2 [%3] %4 %5")
                         .arg(QString::number(entry.iLine), entry.strFunction, entry.strModule,
                              QString::number(entry.iLevel), strText));
    }
    return lines;
}

// Qt's debug messages while it lives, as "file:line function|text".
class DebugMessages
{
public:
    DebugMessages()
    {
        s_lines.clear();
        m_pOld = qInstallMessageHandler(&DebugMessages::Take);
    }
    ~DebugMessages() { qInstallMessageHandler(m_pOld); }

    static QStringList Lines()
    {
        const QMutexLocker locker(&s_mutex);
        return s_lines;
    }

    // Until so many came, from whichever thread; no event is handled meanwhile.
    static bool WaitFor(int iCount)
    {
        const QMutexLocker locker(&s_mutex);
        while (s_lines.size() < iCount) {
            if (!s_arrived.wait(&s_mutex, 10000))
                return false;
        }
        return true;
    }

private:
    static void Take(QtMsgType type, const QMessageLogContext& context, const QString& strText)
    {
        if (type != QtDebugMsg)
            return;
        const QMutexLocker locker(&s_mutex);
        s_lines.append(QStringLiteral("%1:%2 %3|%4")
                           .arg(QString::fromUtf8(context.file), QString::number(context.line),
                                QString::fromUtf8(context.function), strText));
        s_arrived.wakeAll();
    }

    static inline QMutex s_mutex;
    static inline QWaitCondition s_arrived;
    static inline QStringList s_lines;
    QtMessageHandler m_pOld;
};
