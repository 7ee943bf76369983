#include "PictureServer.h"

#include <QtNetwork/QTcpSocket>

#include <utility>

namespace {

constexpr char NotFound[] = "HTTP/1.1 404 Not Found\r\nContent-Length: 2\r\n\r\nno";

} // namespace

PictureServer::PictureServer()
{
    connect(this, &QTcpServer::newConnection, this, &PictureServer::OnConnection);
    listen(QHostAddress::LocalHost);
}

QString PictureServer::Url(const QString& strPath) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(strPath);
}

void PictureServer::Serve(const QString& strPath, const QByteArray& strAnswer)
{
    m_mapAnswers.insert(strPath, strAnswer);
}

void PictureServer::ServePicture(const QString& strPath, const QByteArray& strBody)
{
    Serve(strPath, "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(strBody.size()) + "\r\n\r\n" + strBody);
}

void PictureServer::NeverAnswer(const QString& strPath)
{
    m_setSilent.insert(strPath);
}

void PictureServer::OnConnection()
{
    while (QTcpSocket* pSocket = nextPendingConnection()) {
        connect(pSocket, &QTcpSocket::readyRead, this, [this, pSocket] { Answer(pSocket); });
        connect(pSocket, &QTcpSocket::disconnected, pSocket, &QObject::deleteLater);
    }
}

void PictureServer::Answer(QTcpSocket* pSocket)
{
    if (!pSocket->peek(64 * 1024).contains("\r\n\r\n"))
        return;
    const QList<QByteArray> listWords = pSocket->readAll().split(' ');
    const QString strPath = QString::fromUtf8(listWords.value(1));
    ++m_iRequests;
    if (m_setSilent.contains(strPath)) {
        m_listHeld.append(pSocket);
        connect(pSocket, &QTcpSocket::disconnected, this, [this, pSocket] { m_listHeld.removeOne(pSocket); });
        return;
    }
    pSocket->write(m_mapAnswers.value(strPath, NotFound));
    pSocket->disconnectFromHost();
}

void PictureServer::AnswerHeld()
{
    const QVector<QTcpSocket*> listHeld = std::exchange(m_listHeld, {});
    for (QTcpSocket* pSocket : listHeld) {
        pSocket->write(NotFound);
        pSocket->disconnectFromHost();
    }
}
