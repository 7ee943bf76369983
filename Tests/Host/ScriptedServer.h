#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QThread>

#include <functional>
#include <map>
#include <vector>

class QTcpSocket;

// An HTTP server on a thread of its own that answers each path by a script, good or bad. Loopback only.
class ScriptedServer
{
public:
    // Gets the connection and the request's head; runs on the server's thread.
    using Script = std::function<void(QTcpSocket& socket, const QByteArray& head)>;

    ScriptedServer();
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    void Serve(const QByteArray& path, const Script& script);
    QString Url(const QString& strPath) const;
    std::vector<QByteArray> Heads() const; // of all requests so far
    int OpenConnections() const;
    int AllConnections() const; // that ever were
    // From now on each connection gets these bytes and is closed, whatever comes over it.
    void AnswerAll(const QByteArray& bytes);

private:
    void CountOpen(int iChange);
    QByteArray FixedAnswer() const;
    void Accept(QTcpSocket* pSocket);
    void OnReadyRead(QTcpSocket& socket);

    mutable QMutex m_mutex; // guards the scripts, the heads and the count
    std::map<QByteArray, Script> m_scripts;
    std::vector<QByteArray> m_heads;
    QByteArray m_fixedAnswer;
    int m_iOpen = 0;
    int m_iAll = 0;
    quint16 m_uPort = 0;
    QThread m_thread;
    QObject* m_pContext;
};

// The scripts.
namespace Answer {

// Every byte, with its length.
ScriptedServer::Script Whole(const QByteArray& body, const QByteArray& extraHeaders = QByteArray());
// Promises `iLength` bytes, sends the body and closes.
ScriptedServer::Script Promising(int iLength, const QByteArray& body);
// Chunked; without the last chunk the connection is closed in the middle.
ScriptedServer::Script Chunked(const QByteArray& body, bool bWhole);
ScriptedServer::Script Never();
ScriptedServer::Script Status(const QByteArray& statusLine, const QByteArray& extraHeaders = QByteArray());
// Every byte, without its length: the end of the connection ends it.
ScriptedServer::Script Closing(const QByteArray& body);
// Ends the connection without a word.
ScriptedServer::Script HangUp();
// These bytes, whatever they are.
ScriptedServer::Script Raw(const QByteArray& bytes);
// Sends the head and then one piece at each turn of its timer, without end.
ScriptedServer::Script Endless(int iPieceSize, const QByteArray& statusLine = "200 OK");
// Sends the head and half of the body, and then nothing.
ScriptedServer::Script Stalling(const QByteArray& body);
ScriptedServer::Script Basic(const QByteArray& user, const QByteArray& password, const QByteArray& body);
ScriptedServer::Script Digest(const QByteArray& user, const QByteArray& password, const QByteArray& body,
                              const QByteArray& algorithm = "MD5");

} // namespace Answer
