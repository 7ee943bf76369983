#include "Plugin/KXRecordManageGlobalData.h"

#include "DownloadWidget/DownloadWidget.h"
#include "KXBase/GKXObserver.h"
#include "KXGui/KXColor.h"
#include "KXGui/KXPublic.h"
#include "Model/HostEvents.h"
#include "Plugin/ColorKeys.h"
#include "Plugin/LeftTranslator.h"
#include "ktl/Json.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QTranslator>

KXRecordManageGlobalData* KXRecordManageGlobalData::s_pInstance = nullptr;

KXRecordManageGlobalData::KXRecordManageGlobalData(QObject* pParent)
    : QObject(pParent)
{
    s_pInstance = this;
    GKXObserver::attach(HostEvents::ConfigPluginUpdateLanguage, this, SLOT(UpdatePluginLanguage(QVariantList)));
}

KXRecordManageGlobalData::~KXRecordManageGlobalData()
{
    delete m_pDownloadWidget;
    m_pDownloadWidget = nullptr;
    LeftTranslator::Keep(m_pTranslator);
}

void KXRecordManageGlobalData::Init(QString strlist)
{
    if (m_pTranslator || m_pDownloadWidget)
        return;
    ktl::Json::Value root;
    if (!ktl::Json::Reader().parse(strlist.toStdString(), root, false))
        return;
    UpdatePluginLanguage({QString::fromStdString(root["strLanguage"].asString())});
    m_pDownloadWidget = new DownloadWidget(nullptr);
    ApplyStyleSheet();
}

void KXRecordManageGlobalData::UpdatePluginLanguage(QVariantList list)
{
    LeftTranslator::Drop();
    if (m_pTranslator) {
        QCoreApplication::removeTranslator(m_pTranslator);
        delete m_pTranslator;
        m_pTranslator = nullptr;
    }
    if (list.size() != 1)
        return;
    // QTranslator cuts the name at "_" and "." until a file is found: a code without a file of its own gives the base
    // file.
    const QString strFile = QStringLiteral(":/KXRecordManage/Translates/KXRecordManage_%1.qm").arg(list[0].toString());
    m_pTranslator = new QTranslator(nullptr);
    if (m_pTranslator->load(strFile, QString(), QString(), QString()))
        QCoreApplication::installTranslator(m_pTranslator);
    if (m_pDownloadWidget)
        m_pDownloadWidget->RefreshTexts();
}

void KXRecordManageGlobalData::ApplyStyleSheet()
{
    QFile file(QStringLiteral(":/KXRecordManage/css/style.css"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    QString strStyleSheet = QString::fromUtf8(file.readAll());
    ReplaceColorKeys(strStyleSheet, KXColor::colorMap());
    KXPublic::translateQssKey(strStyleSheet);
    m_pDownloadWidget->ensurePolished(); // else each of its rules is looked for twice: now, and when it is shown
    m_pDownloadWidget->setStyleSheet(strStyleSheet);
}
