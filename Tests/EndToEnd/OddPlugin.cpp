#include "Plugin/IKXWidgetPluginInterface.h"

#include <QtCore/QObject>

// A plug-in of the right interface that is of no use: by what it is compiled with, it says that it is not supported, or
// it makes no widget.
class OddPlugin : public QObject, public IKXWidgetPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.Interface.IKXWidgetPluginInterface")
    Q_INTERFACES(IKXWidgetPluginInterface)

public:
    bool IsSupported() override { return KX_ODD_SUPPORTED; }
    QString Name() override { return QStringLiteral("OddPlugin"); }
    QString Information() override { return QStringLiteral("of no use"); }
    QWidget* CenterWidget(QString) override { return nullptr; }
    void Stop() override { qFatal("stopped without a widget"); }
    void SetGetDataListener(KXLogicPluginGoMain*) override {}
};

#include "OddPlugin.moc"
