// From Init to the first paint, and one more paint of the shown panel: as it is, and with Qt's own drop shadow in the
// place of its own. The shipped library, as a host loads it.

#include "RatioMain.h"

#include "KXGui/KXColor.h"
#include "KXLogic/KXLogic.h"
#include "Plugin/IKXWidgetPluginInterface.h"

#include <QtCore/QPluginLoader>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsDropShadowEffect>
#include <QtWidgets/QWidget>

#include <benchmark/benchmark.h>

#include <cstdio>

namespace {

class PaintWatch : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* pEvent) override
    {
        bPainted |= pEvent->type() == QEvent::Paint;
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

void UseQtsShadow(QWidget& panel)
{
    const auto& own = *qobject_cast<QGraphicsDropShadowEffect*>(panel.graphicsEffect());
    auto* pShadow = new QGraphicsDropShadowEffect(&panel);
    pShadow->setBlurRadius(own.blurRadius());
    pShadow->setColor(own.color());
    pShadow->setOffset(own.offset());
    panel.setGraphicsEffect(pShadow);
}

IKXWidgetPluginInterface& Plugin()
{
    static QPluginLoader s_loader(QStringLiteral(KX_PLUGIN_FILE));
    auto* pPlugin = qobject_cast<IKXWidgetPluginInterface*>(s_loader.instance());
    if (!pPlugin)
        qFatal("the plug-in cannot be loaded: %s", qPrintable(s_loader.errorString()));
    return *pPlugin;
}

QWidget& ShowPanel(bool bQtsShadow)
{
    Plugin().Init(QStringLiteral("{\"strLanguage\":\"en\"}"));
    QWidget& panel = *Plugin().CenterWidget(QString());
    if (bQtsShadow)
        UseQtsShadow(panel);
    Plugin().Start();
    TurnUntilPainted(panel);
    return panel;
}

void EndPanel()
{
    Plugin().Stop();
    Plugin().Destory();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void InitToFirstPaint(benchmark::State& state, bool bQtsShadow)
{
    for (auto _ : state) {
        ShowPanel(bQtsShadow);
        state.PauseTiming();
        EndPanel();
        state.ResumeTiming();
    }
}

void Repaint(benchmark::State& state, bool bQtsShadow)
{
    QWidget& panel = ShowPanel(bQtsShadow);
    for (auto _ : state)
        panel.repaint();
    EndPanel();
}

BENCHMARK_CAPTURE(InitToFirstPaint, own, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(InitToFirstPaint, Qt, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Repaint, own, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Repaint, Qt, true)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(KeepQtQuiet);
    const QApplication app(argc, argv);
    // A host has its libraries in memory before it loads a plug-in.
    if (!KXLogic::Instance() || !KXColor::color(QStringLiteral("pc001"), 1.0).isValid())
        return 2;
    return RunRatios(argc, argv,
                     {{"InitToFirstPaint/own", "InitToFirstPaint/Qt", 1.5}, {"Repaint/own", "Repaint/Qt", 0.3}});
}
