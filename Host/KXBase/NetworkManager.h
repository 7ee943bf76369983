#pragma once

#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>

// A network access manager for a few requests, without Qt 5's two races with its own network thread: a request connects
// to that thread while it starts, and a reply may be destroyed while the thread destroys its side of it.
//
// Thread: that of its owner, with an event loop.
class NetworkManager : public QNetworkAccessManager
{
public:
    // Let so much time pass before the first request: the network thread is then past its start.
    static constexpr int StartupMs = 5;

    explicit NetworkManager(QObject* pParent)
        : QNetworkAccessManager(pParent)
    {
        // A request that the proxy does not suit starts the network thread and ends before it connects to it.
        setProxy(QNetworkProxy(QNetworkProxy::FtpCachingProxy));
        QNetworkReply* pReply = get(QNetworkRequest(QUrl(QStringLiteral("http://127.0.0.1"))));
        connect(pReply, &QNetworkReply::finished, pReply, &QObject::deleteLater);
        setProxy(QNetworkProxy(QNetworkProxy::DefaultProxy));
    }

    // Ends all requests and destroys the reply, which may be null: the network thread ends first.
    void Destroy(QNetworkReply* pReply)
    {
        clearConnectionCache();
        delete pReply;
    }
};
