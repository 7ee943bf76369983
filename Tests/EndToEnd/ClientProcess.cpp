#include "EndToEnd/ClientProcess.h"

#include "Site/SiteClient.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#if !defined(Q_OS_WIN)
#include <csignal>
#endif

namespace EndToEnd {

namespace {

constexpr int LongestRunMs = 320 * 1000;

QString ClientFile()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/kxclient");
}

// What a program wrote, with a line end of one character on every system.
QString TextOf(QByteArray written)
{
    return QString::fromUtf8(written.replace("\r\n", "\n"));
}

// What the client said belongs to what a run leaves behind.
const ClientResult& Kept(const ClientResult& result)
{
    const ScratchDir folder;
    QFile file(folder.filePath(QStringLiteral("said.log")));
    if (!file.open(QIODevice::WriteOnly) || file.write(result.Said()) <= 0)
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return result;
}

} // namespace

QStringList ClientResult::OutLines() const
{
    return strOut.trimmed().split(QLatin1Char('\n'));
}

QString ClientResult::LastOutLine() const
{
    return OutLines().constLast().trimmed();
}

QByteArray ClientResult::Said() const
{
    return (QStringLiteral("exit %1\n%2\n%3").arg(iExit).arg(strOut, strErr)).toUtf8();
}

ClientResult RunClient(const QStringList& arguments, const QStringList& environment)
{
    QProcess process;
    process.setEnvironment(QProcess::systemEnvironment() + environment);
    process.start(ClientFile(), arguments);
    ClientResult result;
    const bool bEnded = process.waitForFinished(LongestRunMs) && process.exitStatus() == QProcess::NormalExit;
    result.iExit = bEnded ? process.exitCode() : -1;
    result.strOut = TextOf(process.readAllStandardOutput());
    result.strErr = TextOf(process.readAllStandardError());
    return Kept(result);
}

RunningClient::~RunningClient()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

bool RunningClient::Start(const QStringList& arguments)
{
    m_process.start(ClientFile(), arguments);
    return m_process.waitForStarted();
}

QString RunningClient::Out()
{
    m_out += m_process.readAllStandardOutput();
    return TextOf(m_out);
}

void RunningClient::Signal(int iSignal)
{
#if defined(Q_OS_WIN)
    Q_UNUSED(iSignal)
    m_process.kill();
#else
    ::kill(static_cast<pid_t>(m_process.processId()), iSignal);
#endif
}

ClientResult RunningClient::Finish()
{
    ClientResult result;
    const bool bEnded = m_process.waitForFinished(LongestRunMs) && m_process.exitStatus() == QProcess::NormalExit;
    result.iExit = bEnded ? m_process.exitCode() : -1;
    result.strOut = Out();
    result.strErr = TextOf(m_process.readAllStandardError());
    return Kept(result);
}

bool ServedSite::Start(const QStringList& arguments)
{
    if (!m_client.Start(QStringList{QStringLiteral("serve")} + arguments))
        return false;
    static const QRegularExpression serving(QStringLiteral("serving on (\\S+)\n(?:.*\n){2}"));
    if (!QTest::qWaitFor([this] { return serving.match(m_client.Out()).hasMatch(); }, LongestRunMs))
        return false;
    m_strBaseUrl = serving.match(m_client.Out()).captured(1);
    m_config = QJsonDocument::fromJson(Get(m_strBaseUrl + "/config.json"_s).body).object();
    return !m_config.isEmpty();
}

bool ServedSite::FetchRecords()
{
    const QByteArray catalogue = Get(m_strBaseUrl + "/catalogue.json?folder=/"_s).body;
    for (const QJsonValue value : QJsonDocument::fromJson(catalogue).array()) {
        QJsonObject record = value.toObject();
        const QString strTarget = record.value(QStringLiteral("strDownloadPath")).toString();
        record[QStringLiteral("strDownloadPath")] = QFileInfo(strTarget).fileName();
        m_records.append(record);
    }
    return !m_records.isEmpty();
}

QByteArray ServedSite::Served(const QString& strPath) const
{
    return Get(m_strBaseUrl + strPath).body;
}

QJsonObject ServedSite::Record(const QString& strRecordId) const
{
    for (const QJsonValue value : m_records) {
        if (value.toObject().value(QStringLiteral("strRecordId")).toString() == strRecordId)
            return value.toObject();
    }
    return QJsonObject();
}

void Workplace::Write(const QString& strName, const QByteArray& content) const
{
    QDir().mkpath(QFileInfo(Path(strName)).absolutePath());
    QFile file(Path(strName));
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray Workplace::Read(const QString& strName) const
{
    QFile file(Path(strName));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject Workplace::Report() const
{
    return QJsonDocument::fromJson(Read(QStringLiteral("report.json"))).object();
}

QStringList Workplace::Download(const QJsonObject& config, const QJsonArray& records) const
{
    Write(QStringLiteral("config.json"), QJsonDocument(config).toJson());
    Write(QStringLiteral("records.json"), QJsonDocument(records).toJson());
    return {QStringLiteral("download"),           QStringLiteral("--config"),
            Path(QStringLiteral("config.json")),  QStringLiteral("--records"),
            Path(QStringLiteral("records.json")), QStringLiteral("--out"),
            Path(QStringLiteral("out")),          QStringLiteral("--json"),
            Path(QStringLiteral("report.json"))};
}

} // namespace EndToEnd
