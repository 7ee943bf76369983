#pragma once

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QVector>
#include <QtNetwork/QTcpServer>

class QTcpSocket;

// A server on loopback that gives fixed bytes for each path, counts, and can keep an answer back.
class PictureServer : public QTcpServer
{
    Q_OBJECT

public:
    PictureServer();

    QString Url(const QString& strPath) const;
    // Everything that is sent for this path, head included; the connection is closed behind it.
    void Serve(const QString& strPath, const QByteArray& strAnswer);
    void ServePicture(const QString& strPath, const QByteArray& strBody);
    // No answer and no end for this path, unless AnswerHeld is called.
    void NeverAnswer(const QString& strPath);
    void AnswerHeld();
    int HeldCount() const { return m_listHeld.size(); }

    int m_iRequests = 0;

private:
    void OnConnection();
    void Answer(QTcpSocket* pSocket);

    QHash<QString, QByteArray> m_mapAnswers;
    QSet<QString> m_setSilent;
    QVector<QTcpSocket*> m_listHeld; // connected, and waiting for an answer
};
