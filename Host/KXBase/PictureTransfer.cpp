#include "Host/KXBase/PictureTransfer.h"

#include <utility>

using KXHost::HttpResult;

PictureTransfer::PictureTransfer(const QString& strPath, const KXHost::PictureLimits& limits, Finished finished)
    : m_limits(limits)
    , m_finished(std::move(finished))
    , m_file(strPath)
{}

bool PictureTransfer::OnHead(const KXHost::HttpHead& head)
{
    if (head.lLength > m_limits.lMaxBytes)
        return GiveUp(QStringLiteral("larger than %1 bytes").arg(m_limits.lMaxBytes));
    return m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || GiveUp(m_file.errorString());
}

bool PictureTransfer::OnData(const char* pData, std::size_t uSize)
{
    const auto lSize = static_cast<qint64>(uSize);
    if (m_file.pos() + lSize > m_limits.lMaxBytes)
        return GiveUp(QStringLiteral("larger than %1 bytes").arg(m_limits.lMaxBytes));
    return m_file.write(pData, lSize) == lSize || GiveUp(m_file.errorString());
}

void PictureTransfer::OnEnd(const KXHost::HttpEnd& end)
{
    m_file.close();
    if (end.result != HttpResult::Whole)
        m_file.remove();
    if (end.result == HttpResult::Whole)
        m_finished(m_file.fileName(), QString());
    else if (end.result != HttpResult::Stopped)
        m_finished(QString(), m_strReason.isEmpty() ? end.strReason : m_strReason);
}

bool PictureTransfer::GiveUp(const QString& strReason)
{
    m_strReason = strReason;
    return false;
}
