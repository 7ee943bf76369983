// A million progress reports for the seven running rows of a long list: how long the turns of the event loop are, and
// how often the window is painted.

#include "BenchPanel.h"

#include <QtCore/QElapsedTimer>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <thread>

namespace {

constexpr int Rows = 100000;
constexpr int RunningRows = 7;
constexpr int Reports = 1000000;
constexpr int ReportsOnTheirWay = 1000; // a host sends no faster than it is heard
constexpr double LongestTurnMs = 16;
constexpr double PaintsPerSecond = 60 * 1.1; // the offscreen screen's rate, and a tenth

// What this thread has computed: a busy machine does not lengthen a turn.
double ThreadMs()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

class PaintCounter : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* pEvent) override
    {
        iPaints += pEvent->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int iPaints = 0;
};

struct Run
{
    double dLongestTurnMs = 0;
    double dPaintsPerSecond = 0;
    double dSeconds = 0;
};

Run TurnUntilHeard(const std::atomic<int>& iHeard)
{
    Run run;
    QElapsedTimer clock;
    clock.start();
    while (iHeard < Reports) {
        const double dBefore = ThreadMs();
        QCoreApplication::processEvents();
        run.dLongestTurnMs = std::max(run.dLongestTurnMs, ThreadMs() - dBefore);
    }
    run.dSeconds = static_cast<double>(clock.elapsed()) / 1e3;
    return run;
}

// A host thread reports; each report is posted to this one.
Run RunReports(BenchPanel& panel)
{
    void* pUser = nullptr;
    const KXLogic::CloudDataCallback pReport = panel.World().Downloads().CloudDataCallbackOf(pUser);
    std::atomic<int> iHeard{0};
    const auto heard = QObject::connect(static_cast<RecordDownloadModule*>(pUser),
                                        &RecordDownloadModule::SignalDownloadRecordData, [&iHeard] { ++iHeard; });
    PaintCounter paints;
    panel.View().viewport()->installEventFilter(&paints);
    std::thread host([&] {
        for (int i = 0; i < Reports; ++i) {
            while (i - iHeard >= ReportsOnTheirWay)
                std::this_thread::yield();
            pReport(i % RunningRows + 1, 4096, pUser);
        }
    });
    Run run = TurnUntilHeard(iHeard);
    run.dPaintsPerSecond = paints.iPaints / run.dSeconds;
    host.join();
    QObject::disconnect(heard);
    return run;
}

using Runs = std::array<Run, 5>;

double Median(const Runs& runs, double Run::*pValue)
{
    Runs sorted = runs;
    std::sort(sorted.begin(), sorted.end(),
              [pValue](const Run& left, const Run& right) { return left.*pValue < right.*pValue; });
    return sorted[sorted.size() / 2].*pValue;
}

int Judge(const char* pszWhat, double dMeasured, double dLimit, const char* pszUnit)
{
    const bool bKept = dMeasured <= dLimit;
    std::printf("%s = %.2f %s (at most %.0f) %s\n", pszWhat, dMeasured, pszUnit, dLimit, bKept ? "kept" : "BROKEN");
    return bKept ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(KeepPlatformQuiet);
    const QApplication app(argc, argv);
    BenchPanel panel;
    panel.Add(panel.MadeRecords(Rows));
    for (int i = 1; i <= RunningRows; ++i)
        panel.Panel().OnDownloadRecordStates(QString::number(i), 1, false);
    panel.ForgetCalls();
    EngineRig::Settle();

    Runs runs;
    for (Run& run : runs) {
        run = RunReports(panel);
        std::printf("%d reports in %.2f s, longest turn %.2f ms, %.1f paints a second\n", Reports, run.dSeconds,
                    run.dLongestTurnMs, run.dPaintsPerSecond);
        if (run.dPaintsPerSecond < 1)
            std::printf("nothing was painted\n");
    }
    const double dPaints = Median(runs, &Run::dPaintsPerSecond);
    return std::max({dPaints < 1 ? 2 : 0,
                     Judge("longest turn of the event loop", Median(runs, &Run::dLongestTurnMs), LongestTurnMs, "ms"),
                     Judge("paints of the list", dPaints, PaintsPerSecond, "a second")});
}
