#include "Host/KXBase/PictureTransfer.h"

#include <QtCore/QUrl>
#include <QtNetwork/QNetworkRequest>

namespace {

constexpr qint64 ReadBufferBytes = 256 * 1024;
constexpr int MostRedirects = 5;

QNetworkRequest MakeRequest(const QString& strUrl)
{
    QNetworkRequest request(QUrl(strUrl, QUrl::StrictMode));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setMaximumRedirectsAllowed(MostRedirects);
    // The picture as served: no packed transfer whose length says nothing about the picture.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

} // namespace

PictureTransfer::PictureTransfer(const QString& strUrl, const QString& strPath, const KXHost::PictureLimits& limits)
    : m_strUrl(strUrl)
    , m_limits(limits)
    , m_file(strPath)
    , m_timer(this)
    , m_network(this)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { Fail(QStringLiteral("no whole picture in time")); });
}

PictureTransfer::~PictureTransfer()
{
    m_network.Destroy(m_pReply);
}

void PictureTransfer::Start()
{
    QTimer::singleShot(NetworkManager::StartupMs, this, &PictureTransfer::Request);
}

void PictureTransfer::Request()
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        m_strReason = m_file.errorString();
        return End();
    }
    m_pReply = m_network.get(MakeRequest(m_strUrl));
    m_pReply->setReadBufferSize(ReadBufferBytes);
    connect(m_pReply, &QNetworkReply::readyRead, this, &PictureTransfer::OnReadyRead);
    connect(m_pReply, &QNetworkReply::finished, this, &PictureTransfer::OnReplyFinished);
    m_timer.start(m_limits.iTimeoutMs);
}

void PictureTransfer::OnReadyRead()
{
    const QByteArray data = m_pReply->readAll();
    if (m_file.pos() + data.size() > m_limits.lMaxBytes)
        Fail(QStringLiteral("larger than %1 bytes").arg(m_limits.lMaxBytes));
    else if (m_file.write(data) != data.size())
        Fail(m_file.errorString());
}

void PictureTransfer::OnReplyFinished()
{
    if (m_strReason.isEmpty() && m_pReply->error() == QNetworkReply::NoError)
        OnReadyRead();
    if (m_strReason.isEmpty())
        m_strReason = ReplyFault();
    End();
}

QString PictureTransfer::ReplyFault() const
{
    if (m_pReply->error() != QNetworkReply::NoError)
        return m_pReply->errorString();
    const int iStatus = m_pReply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (iStatus != 200)
        return QStringLiteral("status %1").arg(iStatus);
    const QVariant length = m_pReply->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid() && length.toLongLong() != m_file.size())
        return QStringLiteral("%1 of %2 bytes").arg(m_file.size()).arg(length.toLongLong());
    return QString();
}

// Ends through OnReplyFinished, which abort() calls.
void PictureTransfer::Fail(const QString& strReason)
{
    if (!m_strReason.isEmpty())
        return;
    m_strReason = strReason;
    m_pReply->abort();
}

void PictureTransfer::End()
{
    m_timer.stop();
    m_file.close();
    if (!m_strReason.isEmpty())
        m_file.remove();
    emit SignalFinished(m_strUrl, m_strReason.isEmpty() ? m_file.fileName() : QString(), m_strReason);
}
