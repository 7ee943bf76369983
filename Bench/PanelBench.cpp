// The panel with very many rows: adding, painting with large thumbnails, deleting; time against a small list or plain
// rows, and memory.

#include "RatioMain.h"

#include "BenchPanel.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
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

void Add(benchmark::State& state)
{
    const int iRows = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            BenchPanel panel;
            const BenchPanel::Records records = panel.MadeRecords(iRows);
            state.ResumeTiming();
            panel.Add(records);
            QCoreApplication::processEvents();
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

// One photograph of 3,840 by 2,160 pixels under many names, so that no two rows share it.
class Thumbnails
{
public:
    Thumbnails()
    {
        QImage image(3840, 2160, QImage::Format_RGB32);
        for (int iY = 0; iY < image.height(); ++iY) {
            auto* pLine = reinterpret_cast<QRgb*>(image.scanLine(iY));
            for (int iX = 0; iX < image.width(); ++iX)
                pLine[iX] = qRgb((iX * 7) & 255, (iX * iY) & 255, (iY * 13) & 255);
        }
        if (!image.save(m_folder.filePath(QStringLiteral("photo.jpg"))))
            qFatal("cannot write a picture");
    }
    QString Fresh()
    {
        const QString strLink = m_folder.filePath(QStringLiteral("%1.jpg").arg(++m_iLinks));
        if (!QFile::link(m_folder.filePath(QStringLiteral("photo.jpg")), strLink))
            qFatal("cannot link a picture");
        return strLink;
    }

private:
    QTemporaryDir m_folder;
    int m_iLinks = 0;
};

Thumbnails& SharedThumbnails()
{
    static Thumbnails s_thumbnails;
    return s_thumbnails;
}

BenchPanel::Records WithThumbnails(BenchPanel& panel, int iRows)
{
    BenchPanel::Records records;
    for (int i = 0; i < iRows; ++i)
        records.push_back(panel.MadeRecord(SharedThumbnails().Fresh()));
    return records;
}

QImage Canvas(BenchPanel& panel)
{
    return QImage(panel.View().viewport()->size(), QImage::Format_ARGB32_Premultiplied);
}

// A full viewport again and again, after a first time that is not measured.
void PaintAgain(benchmark::State& state, bool bThumbnails)
{
    BenchPanel panel;
    panel.Add(bThumbnails ? WithThumbnails(panel, 20) : panel.MadeRecords(20));
    EngineRig::Settle();
    QImage canvas = Canvas(panel);
    panel.PaintRows(canvas);
    for (auto _ : state)
        panel.PaintRows(canvas);
}

void PaintDefaults(benchmark::State& state)
{
    PaintAgain(state, false);
}

void PaintThumbnails(benchmark::State& state)
{
    PaintAgain(state, true);
}

// The paint that decodes. The panel is painted once before its rows have pictures, as it is when they arrive later.
void FirstPaint(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        {
            BenchPanel panel;
            const BenchPanel::Records records = panel.MadeRecords(static_cast<int>(state.range(0)));
            panel.Add(records);
            EngineRig::Settle();
            QImage canvas = Canvas(panel);
            panel.PaintRows(canvas);
            for (const DownloadRecordInfoPtr& pRecord : records)
                pRecord->strPicturePath = SharedThumbnails().Fresh();
            state.ResumeTiming();
            panel.PaintRows(canvas);
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
BENCHMARK(PaintDefaults)->Unit(benchmark::kMicrosecond);
BENCHMARK(PaintThumbnails)->Unit(benchmark::kMicrosecond);
BENCHMARK(FirstPaint)->Arg(7)->Arg(1000)->Iterations(10)->Unit(benchmark::kMillisecond);
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
    const BenchPanel::Records records = panel.MadeRecords(ManyRows);
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
    qInstallMessageHandler(KeepPlatformQuiet);
    const QApplication app(argc, argv);
    const int iMemory = RunMemory();
    const int iRatios = RunRatios(argc, argv,
                                  {{"Add/100000", "Add/1000", 150},
                                   {"PaintThumbnails", "PaintDefaults", 1.3},
                                   {"FirstPaint/1000", "FirstPaint/7", 1.3},
                                   {"DeleteFirst/100000", "DeleteFirst/100", 3}});
    return std::max(iRatios, iMemory);
}
