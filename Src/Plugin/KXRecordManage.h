#pragma once

#include "Plugin/IKXWidgetPluginInterface.h"

#include <QtCore/QObject>

class KXRecordManageGlobalData;

// Who links the class to the plug-in library imports it.
#if defined(KX_BUILDING_PLUGIN)
#define KX_PLUGIN_EXPORT Q_DECL_EXPORT
#else
#define KX_PLUGIN_EXPORT Q_DECL_IMPORT
#endif

// The plug-in object. The host reaches it through QPluginLoader by the interface's IID, or links the class.
// Thread: the GUI thread.
class KX_PLUGIN_EXPORT KXRecordManage : public QObject, public IKXWidgetPluginInterface
{
    Q_OBJECT
    Q_INTERFACES(IKXWidgetPluginInterface)
    Q_PLUGIN_METADATA(IID "com.Interface.IKXWidgetPluginInterface" FILE "KXRecordManage.json")

public:
    KXRecordManage();
    ~KXRecordManage() override;

    const char* Id() override;
    void Init(QString strJson) override;
    void Start() override;
    void Stop() override;
    void Destory() override;
    int Order() override;
    QString Name() override;
    QString Information() override;
    QWidget* CenterWidget(QString strName) override;
    void SetGetDataListener(KXLogicPluginGoMain* pListener) override;

private:
    KXRecordManageGlobalData* m_pGlobalData; // owned; null before Init and after Destory
};
