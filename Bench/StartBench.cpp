// From Init to the first paint, and one more paint of the shown panel, each against an empty dialog with an empty
// graphics view; and how often the idle panel wakes the processor. The shipped library, as a host loads it.

#include "RatioMain.h"

#include "KXGui/KXColor.h"
#include "KXLogic/KXLogic.h"
#include "Plugin/IKXWidgetPluginInterface.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QPluginLoader>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QGraphicsDropShadowEffect>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QVBoxLayout>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>

namespace {

constexpr double WakeUpsPerSecond = 2;
constexpr int IdleSeconds = 5;

class PaintWatch : public QObject
{
public:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override
    {
        bPainted |= pEvent->type() == QEvent::Paint && pObject->isWidgetType();
        return false;
    }
    bool bPainted = false;
};

void TurnUntilPainted(QWidget& widget)
{
    PaintWatch watch;
    widget.installEventFilter(&watch);
    while (!watch.bPainted)
        QCoreApplication::processEvents();
    widget.removeEventFilter(&watch);
}

void Finish()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void FillDialog(QDialog& dialog, bool bShadow)
{
    dialog.setFixedSize(630, 564);
    if (bShadow) {
        auto* pShadow = new QGraphicsDropShadowEffect(&dialog);
        pShadow->setBlurRadius(10.0);
        pShadow->setOffset(0, 0);
        dialog.setGraphicsEffect(pShadow);
    }
    auto* pLayout = new QVBoxLayout(&dialog);
    pLayout->addWidget(new QGraphicsView(new QGraphicsScene(&dialog), &dialog));
}

void ShowDialog(benchmark::State& state, bool bShadow)
{
    for (auto _ : state) {
        QDialog dialog;
        FillDialog(dialog, bShadow);
        dialog.show();
        TurnUntilPainted(dialog);
        state.PauseTiming();
        dialog.hide();
        Finish();
        state.ResumeTiming();
    }
}

void RepaintDialog(benchmark::State& state, bool bShadow)
{
    QDialog dialog;
    FillDialog(dialog, bShadow);
    dialog.show();
    TurnUntilPainted(dialog);
    for (auto _ : state)
        dialog.repaint();
    dialog.hide();
    Finish();
}

void EmptyDialog(benchmark::State& state)
{
    ShowDialog(state, false);
}

// For comparison: what Qt's shadow takes.
void EmptyDialogWithShadow(benchmark::State& state)
{
    ShowDialog(state, true);
}

void EmptyDialogRepaint(benchmark::State& state)
{
    RepaintDialog(state, false);
}

void EmptyDialogWithShadowRepaint(benchmark::State& state)
{
    RepaintDialog(state, true);
}

IKXWidgetPluginInterface* Plugin()
{
    static QPluginLoader s_loader(QStringLiteral(KX_PLUGIN_FILE));
    return qobject_cast<IKXWidgetPluginInterface*>(s_loader.instance());
}

void ShowPanel(IKXWidgetPluginInterface& plugin)
{
    plugin.Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    plugin.Start();
    TurnUntilPainted(*plugin.CenterWidget(QString()));
}

void EndPanel(IKXWidgetPluginInterface& plugin)
{
    plugin.Stop();
    plugin.Destory();
    Finish();
}

void InitToFirstPaint(benchmark::State& state)
{
    IKXWidgetPluginInterface& plugin = *Plugin();
    for (auto _ : state) {
        ShowPanel(plugin);
        state.PauseTiming();
        EndPanel(plugin);
        state.ResumeTiming();
    }
}

void PanelRepaint(benchmark::State& state)
{
    IKXWidgetPluginInterface& plugin = *Plugin();
    ShowPanel(plugin);
    QWidget& panel = *plugin.CenterWidget(QString());
    for (auto _ : state)
        panel.repaint();
    EndPanel(plugin);
}

BENCHMARK(EmptyDialog)->Unit(benchmark::kMillisecond);
BENCHMARK(EmptyDialogWithShadow)->Unit(benchmark::kMillisecond);
BENCHMARK(InitToFirstPaint)->Unit(benchmark::kMillisecond);
BENCHMARK(EmptyDialogRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(EmptyDialogWithShadowRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(PanelRepaint)->Unit(benchmark::kMillisecond);

#ifdef Q_OS_LINUX
// How often each of this process's threads gave up the processor by itself, all together.
qint64 WakeUps()
{
    qint64 lSum = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString& strTask : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(tasks.filePath(strTask + QStringLiteral("/status")));
        if (!status.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                lSum += line.mid(line.indexOf(':') + 1).trimmed().toLongLong();
        }
    }
    return lSum;
}

// Lets the event loop run by itself for that long.
void Idle(int iSeconds)
{
    QTimer::singleShot(iSeconds * 1000, qApp, &QCoreApplication::quit);
    QApplication::exec();
}

int RunIdle()
{
    IKXWidgetPluginInterface& plugin = *Plugin();
    ShowPanel(plugin);
    Idle(1); // what showing leaves to be done
    const qint64 lBefore = WakeUps();
    Idle(IdleSeconds);
    const double dPerSecond = static_cast<double>(WakeUps() - lBefore) / IdleSeconds;
    EndPanel(plugin);
    const bool bKept = dPerSecond <= WakeUpsPerSecond;
    std::printf("wake-ups of the idle panel, all threads = %.1f a second (at most %.0f) %s\n", dPerSecond,
                WakeUpsPerSecond, bKept ? "kept" : "BROKEN");
    return bKept ? 0 : 1;
}
#else
int RunIdle()
{
    std::printf("wake-ups of the idle panel were not measured\n");
    return 2;
}
#endif

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}); // what the platform cannot do
    const QApplication app(argc, argv);
    // A host has its libraries in memory before it loads a plug-in.
    if (!KXLogic::Instance() || !KXColor::color(QStringLiteral("pc001"), 1.0).isValid() || !Plugin()) {
        std::printf("the plug-in cannot be loaded\n");
        return 2;
    }
    const int iRatios = RunRatios(
        argc, argv, {{"InitToFirstPaint", "EmptyDialog", 3}, {"PanelRepaint", "EmptyDialogWithShadowRepaint", 0.5}});
    return std::max(iRatios, RunIdle());
}
