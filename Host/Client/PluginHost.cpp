#include "Host/Client/PluginHost.h"

#include "Plugin/IKXWidgetPluginInterface.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLibrary>

namespace KXClient {

QString PluginHost::DefaultFile()
{
#if defined(Q_OS_WIN)
    const QString strName = QStringLiteral("KXRecordManage.dll");
#else
    const QString strName = QStringLiteral("libKXRecordManage.so");
#endif
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + strName;
}

bool PluginHost::Open(const QString& strFile, const QString& strLanguage, QString& strError)
{
    if (!Load(strFile, strError))
        return false;
    m_pPlugin->SetGetDataListener(nullptr);
    const QJsonObject start{{QStringLiteral("strLanguage"), strLanguage}};
    m_pPlugin->Init(QString::fromUtf8(QJsonDocument(start).toJson(QJsonDocument::Compact)));
    m_bInitialised = true;
    if (m_pPlugin->CenterWidget(QString()))
        return true;
    strError = QStringLiteral("%1: made no widget when it was initialised").arg(strFile);
    return false;
}

// The IID stands in the file's metadata: code of a library that is no plug-in of ours is never run.
bool PluginHost::Load(const QString& strFile, QString& strError)
{
    if (!QFileInfo(strFile).isFile()) {
        strError = QStringLiteral("%1: no such file").arg(strFile);
        return false;
    }
    m_loader.setFileName(QFileInfo(strFile).absoluteFilePath());
    m_loader.setLoadHints(QLibrary::LoadHints()); // Qt would keep the library mapped when it is unloaded
    const QString strIid = m_loader.metaData().value(QLatin1String("IID")).toString();
    const QString strWanted = QLatin1String(qobject_interface_iid<IKXWidgetPluginInterface*>());
    if (strIid != strWanted) {
        strError = QStringLiteral("%1: is no plug-in of the interface %2 (%3)")
                       .arg(strFile, strWanted, strIid.isEmpty() ? m_loader.errorString() : strIid);
        return false;
    }
    m_pPlugin = qobject_cast<IKXWidgetPluginInterface*>(m_loader.instance());
    if (!m_pPlugin)
        strError = QStringLiteral("%1: cannot be loaded: %2").arg(strFile, m_loader.errorString());
    else if (!m_pPlugin->IsSupported())
        strError = QStringLiteral("%1: says that it does not support this client").arg(strFile);
    return strError.isEmpty();
}

QWidget* PluginHost::Panel() const
{
    return m_bInitialised ? m_pPlugin->CenterWidget(QString()) : nullptr;
}

void PluginHost::Show()
{
    if (m_bInitialised)
        m_pPlugin->Start();
}

void PluginHost::Close()
{
    if (m_bInitialised) {
        if (m_pPlugin->CenterWidget(QString()))
            m_pPlugin->Stop();
        m_pPlugin->Destory();
        // What the plug-in left to be deleted later goes while its code is still there.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    m_bInitialised = false;
    m_pPlugin = nullptr;
    if (m_loader.isLoaded())
        m_loader.unload();
}

} // namespace KXClient
