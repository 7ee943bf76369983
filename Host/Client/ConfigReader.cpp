#include "Host/Client/ConfigReader.h"

#include "Host/Client/JsonReading.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>

namespace KXClient {

namespace {

constexpr qint64 LeastLimit = 1000;
constexpr int MostRetries = 100;

constexpr struct
{
    const char* pszName;
    KXHost::Auth auth;
} AuthNames[] = {
    {"none", KXHost::Auth::None},
    {"basic", KXHost::Auth::Basic},
    {"digest", KXHost::Auth::Digest},
};

bool ReadAuth(const QString& strName, KXHost::Auth& auth)
{
    for (const auto& known : AuthNames) {
        if (strName == QLatin1String(known.pszName)) {
            auth = known.auth;
            return true;
        }
    }
    return false;
}

// What is wrong with a URL template; empty when nothing is.
QString TemplateMistake(QString strTemplate)
{
    static const QRegularExpression known(QStringLiteral("\\{(deviceId|channel|recordId|begin|end|token)\\}"));
    static const QRegularExpression field(QStringLiteral("\\{[^}]*\\}"));
    strTemplate.replace(known, QStringLiteral("1"));
    const QRegularExpressionMatch unknown = field.match(strTemplate);
    if (unknown.hasMatch())
        return QStringLiteral("has the unknown field %1").arg(unknown.captured());
    const QUrl url(strTemplate, QUrl::StrictMode);
    const bool bHttp = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!url.isValid() || !bHttp || url.host().isEmpty())
        return QStringLiteral("must be an http or https URL");
    return QString();
}

void ReadSource(ObjectReader& root, const char* pszKey, KXHost::SourceSettings& settings)
{
    const Json* pSource = root.TakeMember(pszKey);
    if (!pSource)
        return;
    settings = KXHost::SourceSettings();
    ObjectReader source(*pSource, QLatin1String(pszKey));
    QString strAuth = QStringLiteral("none");
    if (source.Take("url", settings.strUrl)) {
        const QString strMistake = TemplateMistake(settings.strUrl);
        if (!strMistake.isEmpty())
            source.Fail("url", strMistake);
    } else {
        source.Fail("url", QStringLiteral("is missing"));
    }
    if (source.Take("auth", strAuth) && !ReadAuth(strAuth, settings.auth))
        source.Fail("auth", QStringLiteral("must be none, basic or digest, not \"%1\"").arg(strAuth));
    source.Take("user", settings.strUser);
    source.Take("insecure", settings.bInsecure);
    if (source.Take("limitRate", settings.lBytesPerSecond) && settings.lBytesPerSecond < LeastLimit)
        source.Fail("limitRate", QStringLiteral("must be at least %1 bytes a second").arg(LeastLimit));
    if (source.Take("retries", settings.iRetries) && (settings.iRetries < 0 || settings.iRetries > MostRetries))
        source.Fail("retries", QStringLiteral("must be 0 to %1").arg(MostRetries));
    source.RefuseTheRest();
    root.FailFurtherIn(source.Error());
}

void ReadDevicePasswords(ObjectReader& root, KXHost::Settings& settings)
{
    const Json* pTable = root.TakeMember("devicePasswords");
    if (!pTable)
        return;
    ObjectReader table(*pTable, QStringLiteral("devicePasswords"));
    if (pTable->is_object()) {
        for (const auto& member : pTable->items())
            table.Take(member.key().c_str(), settings.devicePasswords[QString::fromStdString(member.key())]);
    }
    root.FailFurtherIn(table.Error());
}

} // namespace

bool ReadConfig(const QByteArray& text, KXHost::Settings& settings, QString& strError)
{
    const std::optional<Json> json = ParseJson(text, strError);
    if (!json)
        return false;
    ObjectReader root(*json, QString());
    for (size_t uType = 0; uType < settings.sources.size(); ++uType)
        ReadSource(root, SourceKeys[uType], settings.sources[uType]);
    ReadDevicePasswords(root, settings);
    root.RefuseTheRest();
    strError = root.Error();
    return strError.isEmpty();
}

} // namespace KXClient
