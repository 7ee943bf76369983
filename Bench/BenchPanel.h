#pragma once

#include "DownloadWidget/DownloadWidget.h"
#include "Engine/EngineRig.h"
#include "KXGui/GraphicsGridView.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>

// The panel on a fake host, shown, with rows "1", "2", … that are announced by nobody but us.
class BenchPanel
{
public:
    using Records = std::vector<DownloadRecordInfoPtr>;

    BenchPanel()
    {
        ScriptedDisk::Reset();
        m_pPanel = std::make_unique<DownloadWidget>();
        m_pPanel->show();
        EngineRig::Settle();
    }
    ~BenchPanel()
    {
        m_pPanel.reset();
        EngineRig::Settle();
    }

    DownloadWidget& Panel() { return *m_pPanel; }
    FakeWorld& World() { return m_world; }
    GraphicsGridView& View() { return *m_pPanel->findChild<GraphicsGridView*>(); }

    // Away with what the fake host remembers of calls, lines and events.
    void ForgetCalls()
    {
        m_world.Calls().Clear();
        m_world.Log().Clear();
        m_world.Bus().Clear();
    }

    // Of the cloud, because device rows have their pictures copied first.
    DownloadRecordInfoPtr MadeRecord(const QString& strPicture = QString())
    {
        auto pRecord = std::make_shared<KXDownLoadList::DownloadCloudRecordInfo>();
        pRecord->iRecordType = KXDownLoadList::CloudRecord;
        pRecord->strRecordId = QString::number(++m_iRecords);
        pRecord->strFileName = QStringLiteral("Front door %1.mp4").arg(m_iRecords);
        pRecord->strDownloadPath = m_world.Folder() + QLatin1Char('/') + pRecord->strFileName;
        pRecord->strPicturePath = strPicture;
        pRecord->lFileSize = 4000000000;
        pRecord->lReceivedSize = 0;
        return pRecord;
    }
    Records MadeRecords(int iCount)
    {
        Records records;
        for (int i = 0; i < iCount; ++i)
            records.push_back(MadeRecord());
        return records;
    }
    void Add(const Records& records)
    {
        for (const DownloadRecordInfoPtr& pRecord : records)
            m_pPanel->AddDownloadInfo(pRecord);
    }

    // Paints the rows in view, without the window around them.
    void PaintRows(QImage& image)
    {
        QPainter painter(&image);
        View().render(&painter);
    }

private:
    FakeWorld m_world;
    std::unique_ptr<DownloadWidget> m_pPanel;
    int m_iRecords = 0;
};

// The offscreen platform says of each window what it cannot do.
inline void KeepPlatformQuiet(QtMsgType type, const QMessageLogContext&, const QString& strText)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(strText));
}
