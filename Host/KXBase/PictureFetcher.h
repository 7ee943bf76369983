#pragma once

#include <QtCore/QObject>
#include <QtCore/QQueue>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

// Runs the transfers, a few at a time, first come, first served, into a temporary folder that goes with it.
//
// Thread: lives on the network thread.
class PictureFetcher : public QObject
{
    Q_OBJECT

public:
    ~PictureFetcher() override;

    void Fetch(const QString& strUrl);

signals:
    // Once per Fetch. `strPath` is empty when the picture could not be fetched.
    void SignalFetched(QString strUrl, QString strPath);

private:
    void StartNext();
    void OnTransferFinished(const QString& strUrl, const QString& strPath, const QString& strReason);

    QTemporaryDir m_folder;
    QQueue<QString> m_queueUrls;
    int m_iRunning = 0;
    quint64 m_uFileNumber = 0;
};
