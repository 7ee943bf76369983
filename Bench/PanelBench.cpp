// The panel with very many rows: adding and deleting, against a few rows; and what a row takes in memory.

#include "RatioMain.h"

#include "DownloadWidget/DownloadWidget.h"
#include "Engine/EngineRig.h"
#include "KXGui/GraphicsGridView.h"

#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>

#ifdef Q_OS_LINUX
#include <malloc.h>
#endif

namespace {

constexpr int ManyRows = 100000;
constexpr double BytesPerRow = 2500;

using Records = std::vector<DownloadRecordInfoPtr>;

// The panel on a fake host, shown, with rows "1", "2", … that are announced by nobody but us.
class BenchPanel
{
public:
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

    // Away with what the fake host remembers of calls, lines and events.
    void ForgetCalls()
    {
        m_world.Calls().Clear();
        m_world.Log().Clear();
        m_world.Bus().Clear();
    }
    // Of the cloud, because device rows have their pictures copied first.
    Records MadeRecords(int iCount)
    {
        Records records;
        for (int i = 0; i < iCount; ++i) {
            auto pRecord = std::make_shared<KXDownLoadList::DownloadCloudRecordInfo>();
            pRecord->iRecordType = KXDownLoadList::CloudRecord;
            pRecord->strRecordId = QString::number(++m_iRecords);
            pRecord->strFileName = QStringLiteral("Front door %1.mp4").arg(m_iRecords);
            pRecord->strDownloadPath = m_world.Folder() + QLatin1Char('/') + pRecord->strFileName;
            pRecord->lFileSize = 4000000000;
            records.push_back(pRecord);
        }
        return records;
    }
    void Add(const Records& records)
    {
        for (const DownloadRecordInfoPtr& pRecord : records)
            m_pPanel->AddDownloadInfo(pRecord);
    }

private:
    FakeWorld m_world;
    std::unique_ptr<DownloadWidget> m_pPanel;
    int m_iRecords = 0;
};

void Add(benchmark::State& state)
{
    const int iRows = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            BenchPanel panel;
            const Records records = panel.MadeRecords(iRows);
            state.ResumeTiming();
            panel.Add(records);
            QCoreApplication::processEvents();
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

// The first row goes, the others close up and the window is painted anew; a new row takes the last place each time.
void DeleteFirst(benchmark::State& state)
{
    BenchPanel panel;
    const int iRows = static_cast<int>(state.range(0));
    panel.Add(panel.MadeRecords(iRows));
    EngineRig::Settle();
    int iFirst = 0;
    for (auto _ : state) {
        panel.Panel().OnDeleteRecord(QString::number(++iFirst));
        QCoreApplication::processEvents();
        state.PauseTiming();
        panel.Add(panel.MadeRecords(1));
        panel.ForgetCalls();
        EngineRig::Settle();
        state.ResumeTiming();
    }
}

BENCHMARK(Add)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(Add)->Arg(ManyRows)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(DeleteFirst)->Arg(100)->Arg(ManyRows)->Iterations(50)->Unit(benchmark::kMillisecond);

#ifdef Q_OS_LINUX
double HeapBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks) + static_cast<double>(heap.hblkhd);
}

int RunMemory()
{
    BenchPanel panel;
    const Records records = panel.MadeRecords(ManyRows);
    panel.ForgetCalls();
    const double dBefore = HeapBytes();
    panel.Add(records);
    EngineRig::Settle();
    panel.ForgetCalls();
    const double dPerRow = (HeapBytes() - dBefore) / ManyRows;
    const bool bKept = dPerRow <= BytesPerRow;
    std::printf("memory of a row beside its record, of %d = %.0f bytes (at most %.0f) %s\n", ManyRows, dPerRow,
                BytesPerRow, bKept ? "kept" : "BROKEN");
    return bKept ? 0 : 1;
}
#else
int RunMemory()
{
    std::printf("memory of a row beside its record was not measured\n");
    return 2;
}
#endif

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(KeepQtQuiet);
    const QApplication app(argc, argv);
    const int iMemory = RunMemory();
    const int iRatios =
        RunRatios(argc, argv, {{"Add/100000", "Add/1000", 1.5 * 100}, {"DeleteFirst/100000", "DeleteFirst/100", 10}});
    return std::max(iRatios, iMemory);
}
