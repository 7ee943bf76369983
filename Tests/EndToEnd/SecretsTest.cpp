#include "Canary.h"
#include "EndToEnd/ClientProcess.h"
#include "TestMain.h"

#include <QtCore/QDirIterator>
#include <QtCore/QUrl>
#include <QtTest/QtTest>

using namespace EndToEnd;

namespace {

// Passwords and keys that open nothing, so that they may be anything.
const QString OldPassword = QStringLiteral("Canary-old-q7Vx2LmZ");
const QString ToldPassword = QStringLiteral("Canary-told +w9Kp4RtB");
const QString CoverKey = QStringLiteral("Canary-cover-e5Hn8YcD");
const QString ModuleToken = QStringLiteral("Canary-token-u3Js6GfA");

// The ways in which a text may stand somewhere: as it is, in a URL, and as HTTP's basic authentication sends it.
QList<QByteArray> FormsOf(const QString& strSecret)
{
    return {strSecret.toUtf8(), QUrl::toPercentEncoding(strSecret), strSecret.toUtf8().toBase64(),
            ("admin:"_s + strSecret).toUtf8().toBase64()};
}

QStringList Found(const QString& strWhere, const QByteArray& bytes, const QStringList& secrets)
{
    QStringList found;
    for (const QString& strSecret : secrets) {
        for (const QByteArray& form : FormsOf(strSecret)) {
            if (bytes.contains(form))
                found.append(strWhere + ": "_s + QString::fromUtf8(form));
        }
    }
    return found;
}

// Every file below a folder, hidden ones too.
QStringList FoundBelow(const QString& strFolder, const QStringList& secrets)
{
    QStringList found;
    QDirIterator files(strFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        found += file.open(QIODevice::ReadOnly) ? Found(file.fileName(), file.readAll(), secrets)
                                                : QStringList{file.fileName() + ": cannot be read"_s};
    }
    return found;
}

} // namespace

// Passwords and keys stay where they were given: nothing that the client writes or says shows one. The plug-in itself
// hands fetched passwords to the log, which has to hide them.
class SecretsTest : public QObject
{
    Q_OBJECT

private slots:
    void TheDemonstrationShowsNone();
    void AConfigurationAndRecordsShowNone();

private:
    // Runs the client with its home and its temporary files below "out".
    static ClientResult Run(const Workplace& place, QStringList arguments);
    static void VerifyHidden(const Workplace& place, const ClientResult& result, const QStringList& secrets);
};

ClientResult SecretsTest::Run(const Workplace& place, QStringList arguments)
{
    QStringList environment;
    for (const QString& strName : {"TMPDIR"_s, "TMP"_s, "TEMP"_s})
        environment.append(strName + "="_s + place.OutPath("temporary"_s));
    for (const QString& strName : {"HOME"_s, "XDG_RUNTIME_DIR"_s})
        environment.append(strName + "="_s + place.OutPath("home"_s));
    QDir().mkpath(place.OutPath("temporary"_s));
    QDir().mkpath(place.OutPath("home"_s));
    QFile::setPermissions(place.OutPath("home"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    arguments += {"--log"_s, place.OutPath("client.log"_s), "--db"_s, place.OutPath("client.db"_s)};
    return RunClient(arguments, environment);
}

void SecretsTest::VerifyHidden(const Workplace& place, const ClientResult& result, const QStringList& secrets)
{
    QVERIFY2(result.iExit == 0, result.Said());
    QCOMPARE(Found("output"_s, result.Said(), secrets).join("\n"_s), QString());
    QCOMPARE(FoundBelow(place.Path("out"_s), secrets).join("\n"_s), QString());
    QCOMPARE(Found("report"_s, place.Read("report.json"_s), secrets).join("\n"_s), QString());
    QVERIFY2(!place.Read("report.json"_s).isEmpty() && !place.Read("out/client.db"_s).isEmpty(), result.Said());
    QCOMPARE(QDir(place.OutPath("temporary"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
    // The log did get the fetched password of an encrypted recording.
    const QByteArray log = place.Read("out/client.log"_s);
    QVERIFY2(log.contains("ibGet[1],strPassword[***],strDeviceSN[KXC4M7730068]"), log.constData());
}

void SecretsTest::TheDemonstrationShowsNone()
{
    QStringList secrets;
    for (const char* pszSecret : Canary::BuiltIn)
        secrets.append(QString::fromUtf8(pszSecret));
    const Workplace place;
    VerifyHidden(place,
                 Run(place, {"download"_s, "--difficult"_s, "--out"_s, place.Path("out"_s), "--json"_s,
                             place.Path("report.json"_s), "--timeout"_s, "300"_s}),
                 secrets);
}

void SecretsTest::AConfigurationAndRecordsShowNone()
{
    ServedSite site;
    QVERIFY(site.Start({"--difficult"_s}));
    QVERIFY(site.FetchRecords());
    QJsonObject config = site.Config();
    QJsonObject passwords = config.value("devicePasswords"_s).toObject();
    passwords["KXD2S0061174"_s] = ToldPassword;
    config["devicePasswords"_s] = passwords;

    QJsonObject attic = site.Record("KXD2S0061174_1_20240506T120000"_s);
    attic["strPassword"_s] = OldPassword;
    QJsonObject quay = site.Record("4611686018427400201"_s);
    quay["strCloudText4"_s] = CoverKey;
    QJsonObject module = site.Record("KXM3G0007719_1_20240402T090000"_s);
    module["strPassword"_s] = ModuleToken;
    module["strLanText3"_s] = ModuleToken;
    module["expect"_s] = "refused"_s;
    const Workplace place;
    const QStringList arguments = place.Download(config, {attic, quay, module, site.Record("4611686018427400206"_s)});

    const QStringList secrets{OldPassword, ToldPassword, CoverKey, ModuleToken, "Harb0ur"_s};
    for (const QString& strSecret : secrets)
        QVERIFY2(!FoundBelow(place.Path({}), {strSecret}).isEmpty(), "the search finds what was given");
    VerifyHidden(place, Run(place, arguments), secrets);
}

KX_TEST(SecretsTest, QCoreApplication)
#include "SecretsTest.moc"
