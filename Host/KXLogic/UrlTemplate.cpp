#include "Host/KXLogic/UrlTemplate.h"

#include <utility>

namespace {

QString Encoded(const std::string& strText)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(QString::fromStdString(strText)));
}

} // namespace

namespace KXHost {

QUrl ExpandUrl(const QString& strTemplate, const KXLogic::DownloadRequest& request, QString& strReason)
{
    // An encoded value has no brace, so that no value is taken for a field.
    const std::pair<QLatin1String, QString> fields[] = {
        {QLatin1String("{deviceId}"), Encoded(request.strDeviceId)},
        {QLatin1String("{channel}"), QString::number(request.iChannelNo)},
        {QLatin1String("{recordId}"), Encoded(request.strRecordId)},
        {QLatin1String("{begin}"), QString::number(request.lBeginTime)},
        {QLatin1String("{end}"), QString::number(request.lEndTime)},
        {QLatin1String("{token}"), Encoded(request.strAddress)},
    };
    QString strUrl = strTemplate;
    for (const auto& field : fields)
        strUrl.replace(field.first, field.second);
    QUrl url(strUrl, QUrl::StrictMode);
    if (strTemplate.isEmpty())
        strReason = QStringLiteral("the source has no URL");
    else if (!url.isValid() || url.host().isEmpty())
        strReason = QStringLiteral("the source's URL template gives no URL");
    else if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))
        strReason = QStringLiteral("the source's URL is neither http nor https");
    else if (!url.userInfo().isEmpty())
        strReason = QStringLiteral("the source's URL carries credentials");
    else
        return url;
    return QUrl();
}

} // namespace KXHost
