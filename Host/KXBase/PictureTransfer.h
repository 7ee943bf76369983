#pragma once

#include "Host/KXBase/NetworkManager.h"
#include "Host/KXBase/PictureSettings.h"

#include <QtCore/QFile>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

// One picture on its way from its URL to its file. Tells the end once; a file that is not whole is removed.
//
// Thread: the network thread. Ownership: the fetcher, which deletes it after SignalFinished.
class PictureTransfer : public QObject
{
    Q_OBJECT

public:
    PictureTransfer(const QString& strUrl, const QString& strPath, const KXHost::PictureLimits& limits);
    ~PictureTransfer() override;

    void Start();

signals:
    // `strReason` is empty for a picture that arrived whole.
    void SignalFinished(QString strUrl, QString strPath, QString strReason);

private:
    void Request();
    void OnReadyRead();
    void OnReplyFinished();
    void Fail(const QString& strReason);
    QString ReplyFault() const;
    void End();

    const QString m_strUrl;
    const KXHost::PictureLimits m_limits;
    QFile m_file;
    QTimer m_timer;
    NetworkManager m_network;
    QNetworkReply* m_pReply = nullptr; // owned
    QString m_strReason;
};
