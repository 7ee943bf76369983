#pragma once

#include "ScratchDir.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

// The real client, run as a user runs it. Every program of this folder stands beside it.
namespace EndToEnd {

inline QString operator""_s(const char* pszText, size_t uLength)
{
    return QString::fromUtf8(pszText, static_cast<int>(uLength));
}

struct ClientResult
{
    int iExit = -1; // -1: it did not end by itself
    QString strOut;
    QString strErr;

    QStringList OutLines() const;
    QString LastOutLine() const;
    // For QVERIFY2: all that the client said.
    QByteArray Said() const;
};

// Runs to the end.
ClientResult RunClient(const QStringList& arguments, const QStringList& environment = {});

// A client that is watched while it runs.
class RunningClient
{
public:
    ~RunningClient();
    bool Start(const QStringList& arguments);
    // What it wrote to standard output so far.
    QString Out();
    // Ctrl+C, a termination signal.
    void Signal(int iSignal);
    // Waits for its end.
    ClientResult Finish();

private:
    QProcess m_process;
    QByteArray m_out;
};

// "kxclient serve" on a free port, with what is needed to download from it.
class ServedSite
{
public:
    bool Start(const QStringList& arguments = {});
    // Reads the catalogue: a second or two, because the site sums up every recording for it.
    bool FetchRecords();
    QString BaseUrl() const { return m_strBaseUrl; }
    QJsonObject Config() const { return m_config; }
    // The catalogue's recordings; their targets are bare file names.
    QJsonArray Records() const { return m_records; }
    QJsonObject Record(const QString& strRecordId) const;
    // A recording as the site serves it.
    QByteArray Served(const QString& strPath) const;

private:
    RunningClient m_client;
    QString m_strBaseUrl;
    QJsonObject m_config;
    QJsonArray m_records;
};

// A folder with a configuration, records and a download folder, and the options that name them.
class Workplace
{
public:
    QString Path(const QString& strName) const { return m_folder.filePath(strName); }
    QString OutPath(const QString& strName) const { return m_folder.filePath(QStringLiteral("out/") + strName); }
    void Write(const QString& strName, const QByteArray& content) const;
    QByteArray Read(const QString& strName) const;
    QJsonObject Report() const;
    // Writes both inputs; gives "download --config ... --records ... --out ... --json ...".
    QStringList Download(const QJsonObject& config, const QJsonArray& records) const;

private:
    ScratchDir m_folder;
};

} // namespace EndToEnd
