#include "Plugin/KXRecordManage.h"

#include "DownloadWidget/DownloadWidget.h"
#include "Plugin/KXRecordManageGlobalData.h"

KXRecordManage::KXRecordManage()
    : m_pGlobalData(nullptr)
{}

KXRecordManage::~KXRecordManage() = default;

const char* KXRecordManage::Id()
{
    return KXPluginIdentifiers::RecordManage;
}

void KXRecordManage::Init(QString strJson)
{
    if (!m_pGlobalData)
        m_pGlobalData = new KXRecordManageGlobalData(this);
    m_pGlobalData->Init(strJson);
}

void KXRecordManage::Start()
{
    if (m_pGlobalData && m_pGlobalData->Panel())
        m_pGlobalData->Panel()->show();
}

// The host stops a plug-in only after Init.
void KXRecordManage::Stop()
{
    m_pGlobalData->Panel()->Stop();
}

void KXRecordManage::Destory()
{
    delete m_pGlobalData;
    m_pGlobalData = nullptr;
}

int KXRecordManage::Order()
{
    return 1;
}

QString KXRecordManage::Name()
{
    return QStringLiteral("KXRecordManage");
}

QString KXRecordManage::Information()
{
    return QStringLiteral("KXRecordManage information");
}

QWidget* KXRecordManage::CenterWidget(QString)
{
    return m_pGlobalData ? m_pGlobalData->Panel() : nullptr;
}

void KXRecordManage::SetGetDataListener(KXLogicPluginGoMain*)
{}
