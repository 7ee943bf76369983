#pragma once

#include "Plugin/IKXBaseInterface.h"
#include "Plugin/KXPluginIdentifiers.h"

#include <QtCore/QtPlugin>

class KXLogicPluginGoMain; // host type, passed through and never looked into
class QWidget;

// A plug-in that brings a widget. The host finds it by the IID below through QPluginLoader.
//
// Order of calls, all on the GUI thread: Id/Name/Information/Order at will, SetGetDataListener, Init once,
// CenterWidget and Start, Stop, Destory, unload.
class IKXWidgetPluginInterface : public IKXBaseInterface
{
public:
    bool IsSupported() override { return true; }
    const char* Id() override { return KXPluginIdentifiers::WidgetPluginInterface; }
    void Init(QString) override {}
    void Start() override {}
    QString Query(QString) override { return QString(); }
    void Stop() override {}
    void Destory() override {}
    int Order() override { return 0; }

    virtual ~IKXWidgetPluginInterface() = default;
    virtual QString Name() = 0;
    virtual QString Information() = 0;
    // The plug-in's widget, owned by the plug-in and gone after Destory; null before Init or when Init failed.
    virtual QWidget* CenterWidget(QString strName) = 0;
    // May be ignored by the plug-in. `pListener` stays owned by the host.
    virtual void SetGetDataListener(KXLogicPluginGoMain* pListener) = 0;
};

Q_DECLARE_INTERFACE(IKXWidgetPluginInterface, "com.Interface.IKXWidgetPluginInterface")
