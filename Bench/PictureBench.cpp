// 1,000 covers that arrive at once, with a host that decrypts in no time: against a bare loop that does the same to the
// files, and the longest turn of the event loop while the panel takes them in.

#include "RatioMain.h"

#include "DownloadWidget/DownloadWidget.h"
#include "Engine/EngineRig.h"
#include "KXGui/GraphicsGridView.h"
#include "KXLogic/KXLogicModules.h"
#include "Module/PictrueDecrypt.h"

#include <QtCore/QBuffer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTranslator>
#include <QtGui/QImage>
#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <thread>

#include <sys/resource.h>

using namespace KXDownLoadList;

namespace {

constexpr int Covers = 1000;
constexpr qint64 LongestTurnMs = 16;

// A picture of the size of the site's covers; stripes, so that it is no less work than a photograph.
QByteArray Cover()
{
    QImage image(320, 180, QImage::Format_RGB32);
    for (int iY = 0; iY < image.height(); ++iY) {
        for (int iX = 0; iX < image.width(); ++iX)
            image.setPixel(iX, iY, qRgb((iX * 7) & 255, (iX * iY) & 255, (iY * 13) & 255));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return bytes;
}

// The covers' files, and where their pictures go.
class Files
{
public:
    Files()
    {
        for (int i = 0; i < Covers; ++i) {
            QFile file(Served(i));
            if (!file.open(QIODevice::WriteOnly) || file.write(Cover()) <= 0)
                qFatal("cannot write a cover");
        }
    }
    QString Served(int i) const { return m_folder.filePath(QStringLiteral("%1.enc").arg(i)); }
    QString Recording(int i) const { return m_folder.filePath(QStringLiteral("%1.mp4").arg(i)); }
    QString Picture(int i) const { return m_folder.filePath(QStringLiteral("%1.jpg").arg(i)); }

private:
    QTemporaryDir m_folder;
};

const Files& SharedFiles()
{
    static const Files s_files;
    return s_files;
}

class InstantCloud final : public KXLogic::ICloudLogic
{
public:
    int SetCloudPasswordCallback(void*, KXLogic::CloudPasswordCallback) override { return 0; }
    int UnregisterCloudPasswordCallback(void*) override { return 0; }
    int GetCloudRecordPassword(const std::string&, const std::string&, int, std::int64_t, const std::string&,
                               const std::string&, qint64, const std::string&) override
    {
        return 1;
    }
    int DecryptPicture(const std::string&, const std::string&, const std::string&, const std::string&,
                       std::string& strClearBase64) override
    {
        strClearBase64 = m_strClear;
        return 0;
    }
    int ReportRecordDownloaded(const std::string&, int, qint64, qint64, int, const std::string&) override { return 0; }

private:
    const std::string m_strClear = Cover().toBase64().toStdString();
};

// Reads, encodes, decodes, loads and saves.
void BareLoop(benchmark::State& state)
{
    const Files& files = SharedFiles();
    const std::string strClear = Cover().toBase64().toStdString();
    for (auto _ : state) {
        for (int i = 0; i < Covers; ++i) {
            QFile file(files.Served(i));
            if (!file.open(QIODevice::ReadOnly))
                return state.SkipWithError("a cover cannot be read");
            const std::string strSealed = file.readAll().toBase64().toStdString();
            benchmark::DoNotOptimize(strSealed.data());
            QImage image;
            image.loadFromData(QByteArray::fromBase64(QByteArray::fromStdString(strClear)));
            image.save(files.Picture(i));
        }
    }
}

void DecryptQueue(benchmark::State& state)
{
    const Files& files = SharedFiles();
    InstantCloud cloud;
    PictrueDecrypt decrypt(&cloud, nullptr);
    QObject here; // on this thread
    int iFinished = 0;
    QObject::connect(&decrypt, &PictrueDecrypt::SignalDecrptPictrueFinished, &here, [&iFinished](int iResult) {
        if (iResult == 0)
            ++iFinished;
    });
    decrypt.Start();
    for (auto _ : state) {
        iFinished = 0;
        for (int i = 0; i < Covers; ++i)
            decrypt.Enqueue({QString::number(i), files.Served(i), QStringLiteral("key"), QStringLiteral("device"),
                             QStringLiteral("password"), files.Recording(i)});
        while (iFinished < Covers)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

BENCHMARK(BareLoop)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(DecryptQueue)->Unit(benchmark::kMillisecond)->UseRealTime();

// In milliseconds.
struct Longest
{
    double dWall = 0; // by the clock
    double dOwn = 0;  // without what other programs took from it
};

// One turn of the event loop. Its own time is what the clock says, unless the system gave the processor to another
// thread meanwhile: then it is the processor time that the turn used. Waiting for a lock or a file counts.
class Turn
{
public:
    Turn() { m_clock.start(); }
    void AddTo(Longest& longest) const
    {
        const double dWall = static_cast<double>(m_clock.nsecsElapsed()) / 1e6;
        const rusage now = Usage();
        const double dUsed = Milliseconds(now) - Milliseconds(m_before);
        longest.dWall = std::max(longest.dWall, dWall);
        longest.dOwn = std::max(longest.dOwn, now.ru_nivcsw == m_before.ru_nivcsw ? dWall : dUsed);
    }

private:
    static rusage Usage()
    {
        rusage usage = {};
        getrusage(RUSAGE_THREAD, &usage);
        return usage;
    }
    static double Milliseconds(const rusage& usage)
    {
        const auto ms = [](const timeval& time) {
            return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
        };
        return ms(usage.ru_utime) + ms(usage.ru_stime);
    }

    const rusage m_before = Usage();
    QElapsedTimer m_clock;
};

// The panel on a fake host with that many cloud tasks that wait for their covers.
class Panel
{
public:
    Panel()
    {
        ScriptedDisk::Reset();
        m_pPanel = std::make_unique<DownloadWidget>();
        m_pPanel->show();
        std::vector<DownloadCloudRecordInfo> records(Covers);
        const QByteArray cover = Cover();
        for (int i = 0; i < Covers; ++i) {
            DownloadCloudRecordInfo& record = records[static_cast<std::size_t>(i)];
            record.iRecordType = CloudRecord;
            record.strRecordId = QString::number(i + 1);
            record.strDownloadPath = m_world.Path(qPrintable(record.strRecordId)) + QStringLiteral(".mp4");
            record.strCloudText1 = QStringLiteral("cover-") + record.strRecordId;
            m_world.Cloud().QueueDecryption(0, cover);
        }
        m_world.Bus().Send("EventNotifyDownloadRecordList", {EngineRig::Stream(records), CloudRecord});
        EngineRig::Settle();
    }
    ~Panel()
    {
        m_pPanel.reset();
        EngineRig::Settle();
    }

    // All covers arrive at once; gives the longest turns until the panel has all tasks.
    Longest LongestTurns()
    {
        for (int i = 0; i < Covers; ++i)
            m_world.Pictures().AnswerWithFile(qPrintable(QStringLiteral("cover-%1").arg(i + 1)), "encrypted");
        Longest longest;
        const auto& view = *m_pPanel->findChild<GraphicsGridView*>();
        while (!view.GetItem(QString::number(Covers))) { // the last one, as they are decrypted in order
            const Turn turn;
            QCoreApplication::processEvents();
            turn.AddTo(longest);
            std::this_thread::yield();
        }
        return longest;
    }

private:
    FakeWorld m_world;
    std::unique_ptr<DownloadWidget> m_pPanel;
};

double MedianOf(std::array<Longest, 5> runs, double Longest::*pValue)
{
    std::sort(runs.begin(), runs.end(), [pValue](const Longest& a, const Longest& b) { return a.*pValue < b.*pValue; });
    return runs[2].*pValue;
}

// The median of five runs, as for the ratios.
int RunTurns()
{
    std::array<Longest, 5> runs;
    for (Longest& longest : runs)
        longest = Panel().LongestTurns();
    const double dOwn = MedianOf(runs, &Longest::dOwn);
    const bool bKept = dOwn <= LongestTurnMs;
    std::printf("longest turn of the event loop while %d covers are decrypted = %.2f ms, by the clock %.2f ms "
                "(at most %d ms) %s\n",
                Covers, dOwn, MedianOf(runs, &Longest::dWall), static_cast<int>(LongestTurnMs),
                bKept ? "kept" : "BROKEN");
    return bKept ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    QTranslator translator;
    if (translator.load(QStringLiteral(":/KXRecordManage/Translates/KXRecordManage_en.qm")))
        QCoreApplication::installTranslator(&translator);
    const int iRatios = RunRatios(argc, argv, {{"DecryptQueue", "BareLoop", 1.2}});
    return std::max(iRatios, RunTurns());
}
