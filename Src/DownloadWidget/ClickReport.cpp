#include "DownloadWidget/ClickReport.h"

#include "KXBase/GKXObserver.h"
#include "Model/HostEvents.h"
#include "ktl/Json.h"

#include <QtCore/QDateTime>
#include <QtCore/QObject>

QString ElementPath(const QObject* pOwner)
{
    QString strPath;
    for (const QObject* pObject = pOwner; pObject; pObject = pObject->parent())
        strPath += QLatin1Char('.') + pObject->objectName();
    return strPath;
}

void SendClickReport(const QString& strElement, QEvent::Type type, Qt::MouseButtons buttons)
{
    ktl::Json::Value report; // the order of the keys is part of the report
    report["time"] = std::int64_t{QDateTime::currentMSecsSinceEpoch()};
    report["event"] = "$AppClick";
    ktl::Json::Value& properties = report["properties"];
    properties["$carrier"] = "";
    properties["$network_type"] = "";
    properties["$screen_name"] = "QTMAIN";
    properties["$element_type"] =
        QStringLiteral("QEventType=%1&MouseButtons=%2").arg(int(type)).arg(int(buttons)).toStdString();
    properties["$element_id"] = strElement.toStdString();
    const QString strText = QString::fromStdString(ktl::Json::FastWriter().write(report));
    GKXObserver::notify(HostEvents::LogV2Report, QVariant(strText));
}
