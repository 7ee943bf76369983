#include "ScriptedServer.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QMetaObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

namespace {

QByteArray Head(const QByteArray& statusLine, int iLength, const QByteArray& extraHeaders = QByteArray())
{
    return "HTTP/1.1 " + statusLine + "\r\nContent-Length: " + QByteArray::number(iLength) + "\r\n" + extraHeaders +
           "\r\n";
}

QByteArray Header(const QByteArray& head, const QByteArray& name)
{
    for (const QByteArray& line : head.split('\n')) {
        if (line.toLower().startsWith(name.toLower() + ':'))
            return line.mid(name.size() + 1).trimmed();
    }
    return QByteArray();
}

// A part of a digest header: name="value" or name=value.
QByteArray Part(const QByteArray& header, const char* pszName)
{
    const QRegularExpression pattern(
        QStringLiteral("(?:^|[ ,])%1=(?:\"((?:[^\"\\\\]|\\\\.)*)\"|([^\", ]*))").arg(QLatin1String(pszName)));
    const QRegularExpressionMatch match = pattern.match(QString::fromLatin1(header));
    const QString strValue = match.captured(1) + match.captured(2);
    static const QRegularExpression escaped(QStringLiteral("\\\\(.)"));
    return QString(strValue).replace(escaped, QStringLiteral("\\1")).toLatin1();
}

bool DigestIsRight(const QByteArray& header, const QByteArray& user, const QByteArray& password,
                   const QByteArray& algorithm)
{
    const auto hash = [&algorithm](const QByteArray& text) {
        const bool bSha = algorithm.startsWith("SHA-256");
        return QCryptographicHash::hash(text, bSha ? QCryptographicHash::Sha256 : QCryptographicHash::Md5).toHex();
    };
    QByteArray one = hash(user + ":site:" + password);
    if (algorithm.endsWith("-sess"))
        one = hash(one + ':' + Part(header, "nonce") + ':' + Part(header, "cnonce"));
    const QByteArray two = hash("GET:" + Part(header, "uri"));
    const QByteArray expected = hash(one + ':' + Part(header, "nonce") + ':' + Part(header, "nc") + ':' +
                                     Part(header, "cnonce") + ':' + Part(header, "qop") + ':' + two);
    return header.startsWith("Digest ") && Part(header, "username") == user && Part(header, "nonce") == "abc123" &&
           Part(header, "algorithm") == algorithm && Part(header, "response") == expected;
}

} // namespace

ScriptedServer::ScriptedServer()
    : m_pContext(new QObject)
{
    m_pContext->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_pContext, &QObject::deleteLater);
    m_thread.start();
    const auto listen = [this] {
        auto* const pServer = new QTcpServer(m_pContext);
        QObject::connect(pServer, &QTcpServer::newConnection, m_pContext, [this, pServer] {
            while (QTcpSocket* pSocket = pServer->nextPendingConnection())
                Accept(pSocket);
        });
        pServer->listen(QHostAddress::LocalHost);
        m_uPort = pServer->serverPort();
    };
    QMetaObject::invokeMethod(m_pContext, listen, Qt::BlockingQueuedConnection);
}

ScriptedServer::~ScriptedServer()
{
    m_thread.quit();
    m_thread.wait();
}

void ScriptedServer::Serve(const QByteArray& path, const Script& script)
{
    const QMutexLocker lock(&m_mutex);
    m_scripts[path] = script;
}

QString ScriptedServer::Url(const QString& strPath) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(m_uPort).arg(strPath);
}

std::vector<QByteArray> ScriptedServer::Heads() const
{
    const QMutexLocker lock(&m_mutex);
    return m_heads;
}

int ScriptedServer::OpenConnections() const
{
    const QMutexLocker lock(&m_mutex);
    return m_iOpen;
}

int ScriptedServer::AllConnections() const
{
    const QMutexLocker lock(&m_mutex);
    return m_iAll;
}

void ScriptedServer::AnswerAll(const QByteArray& bytes)
{
    const QMutexLocker lock(&m_mutex);
    m_fixedAnswer = bytes;
}

QByteArray ScriptedServer::FixedAnswer() const
{
    const QMutexLocker lock(&m_mutex);
    return m_fixedAnswer;
}

void ScriptedServer::CountOpen(int iChange)
{
    const QMutexLocker lock(&m_mutex);
    m_iOpen += iChange;
    m_iAll += iChange > 0 ? iChange : 0;
}

void ScriptedServer::Accept(QTcpSocket* pSocket)
{
    CountOpen(1);
    QObject::connect(pSocket, &QTcpSocket::readyRead, m_pContext, [this, pSocket] { OnReadyRead(*pSocket); });
    QObject::connect(pSocket, &QTcpSocket::disconnected, m_pContext, [this, pSocket] {
        pSocket->deleteLater();
        CountOpen(-1);
    });
#ifdef Q_OS_WIN
    // Under load Wine loses the notice that a client is gone; asking finds out.
    auto* const pTimer = new QTimer(pSocket);
    QObject::connect(pTimer, &QTimer::timeout, pSocket, [pSocket] { pSocket->waitForReadyRead(0); });
    pTimer->start(100);
#endif
}

void ScriptedServer::OnReadyRead(QTcpSocket& socket)
{
    const QByteArray fixed = FixedAnswer();
    if (!fixed.isEmpty()) {
        socket.readAll();
        socket.write(fixed);
        return socket.disconnectFromHost();
    }
    const QByteArray seen = socket.peek(65536);
    const int iEnd = seen.indexOf("\r\n\r\n");
    if (iEnd < 0)
        return;
    const QByteArray head = socket.read(iEnd + 4);
    const QByteArray path = head.split(' ').value(1);
    Script script;
    {
        const QMutexLocker lock(&m_mutex);
        m_heads.push_back(head);
        const auto found = m_scripts.find(path);
        script = found == m_scripts.end() ? Answer::Status("404 Not Found") : found->second;
    }
    script(socket, head);
}

ScriptedServer::Script Answer::Whole(const QByteArray& body, const QByteArray& extraHeaders)
{
    return
        [=](QTcpSocket& socket, const QByteArray&) { socket.write(Head("200 OK", body.size(), extraHeaders) + body); };
}

ScriptedServer::Script Answer::Promising(int iLength, const QByteArray& body)
{
    return [=](QTcpSocket& socket, const QByteArray&) {
        socket.write(Head("200 OK", iLength) + body);
        socket.disconnectFromHost();
    };
}

ScriptedServer::Script Answer::Chunked(const QByteArray& body, bool bWhole)
{
    return [=](QTcpSocket& socket, const QByteArray&) {
        socket.write("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + QByteArray::number(body.size(), 16) +
                     "\r\n" + body + "\r\n");
        if (bWhole)
            socket.write("0\r\n\r\n");
        else
            socket.disconnectFromHost();
    };
}

ScriptedServer::Script Answer::Closing(const QByteArray& body)
{
    return [=](QTcpSocket& socket, const QByteArray&) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n" + body);
        socket.disconnectFromHost();
    };
}

ScriptedServer::Script Answer::HangUp()
{
    return [](QTcpSocket& socket, const QByteArray&) { socket.disconnectFromHost(); };
}

ScriptedServer::Script Answer::Raw(const QByteArray& bytes)
{
    return [=](QTcpSocket& socket, const QByteArray&) { socket.write(bytes); };
}

ScriptedServer::Script Answer::Never()
{
    return [](QTcpSocket&, const QByteArray&) {};
}

ScriptedServer::Script Answer::Status(const QByteArray& statusLine, const QByteArray& extraHeaders)
{
    return [=](QTcpSocket& socket, const QByteArray&) {
        const QByteArray body = "an explanation that is no recording";
        socket.write(Head(statusLine, body.size(), extraHeaders) + body);
    };
}

ScriptedServer::Script Answer::Endless(int iPieceSize, const QByteArray& statusLine)
{
    return [=](QTcpSocket& socket, const QByteArray&) {
        socket.write(Head(statusLine, 2000000000));
        auto* const pTimer = new QTimer(&socket);
        QObject::connect(pTimer, &QTimer::timeout, &socket, [&socket, iPieceSize] {
            if (socket.bytesToWrite() < 4 * 1024 * 1024)
                socket.write(QByteArray(iPieceSize, 'e'));
            else
                socket.flush(); // that the client is gone may show in an attempt only
        });
        pTimer->start(5);
    };
}

ScriptedServer::Script Answer::Stalling(const QByteArray& body)
{
    return [=](QTcpSocket& socket, const QByteArray&) {
        socket.write(Head("200 OK", body.size()) + body.left(body.size() / 2));
    };
}

ScriptedServer::Script Answer::Basic(const QByteArray& user, const QByteArray& password, const QByteArray& body)
{
    return [=](QTcpSocket& socket, const QByteArray& head) {
        const bool bRight = Header(head, "Authorization") == "Basic " + QByteArray(user + ':' + password).toBase64();
        (bRight ? Whole(body) : Status("401 Unauthorized", "WWW-Authenticate: Basic realm=\"site\"\r\n"))(socket, head);
    };
}

ScriptedServer::Script Answer::Digest(const QByteArray& user, const QByteArray& password, const QByteArray& body,
                                      const QByteArray& algorithm)
{
    return [=](QTcpSocket& socket, const QByteArray& head) {
        const bool bRight = DigestIsRight(Header(head, "Authorization"), user, password, algorithm);
        const QByteArray challenge =
            "WWW-Authenticate: Digest realm=\"site\", nonce=\"abc123\", algorithm=" + algorithm + ", qop=\"auth\"\r\n";
        (bRight ? Whole(body) : Status("401 Unauthorized", challenge))(socket, head);
    };
}
