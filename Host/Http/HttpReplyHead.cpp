#include "Host/Http/HttpReplyHead.h"

namespace KXHost {

namespace {

constexpr int FirstFinalStatus = 200;

} // namespace

bool HttpReplyHead::Add(const char* pLine, std::size_t uSize)
{
    m_uSize += uSize;
    if (m_uSize > MostBytes)
        return false;
    if (m_bComplete)
        return true;
    const QByteArray line = QByteArray(pLine, static_cast<int>(uSize)).trimmed();
    const int iColon = line.indexOf(':');
    if (line.isEmpty())
        m_bComplete = m_iStatus >= FirstFinalStatus;
    else if (line.startsWith("HTTP/"))
        Begin(line);
    else if (iColon > 0)
        m_fields.append({line.left(iColon).trimmed().toLower(), line.mid(iColon + 1).trimmed()});
    return true;
}

void HttpReplyHead::Begin(const QByteArray& statusLine)
{
    m_fields.clear();
    m_iStatus = statusLine.simplified().split(' ').value(1).toInt();
}

QList<QByteArray> HttpReplyHead::Values(const QByteArray& strName) const
{
    QList<QByteArray> values;
    for (const auto& field : m_fields) {
        if (field.first == strName)
            values.append(field.second);
    }
    return values;
}

bool HttpReplyHead::IsChunked() const
{
    return Value("transfer-encoding").toLower().contains("chunked");
}

qint64 HttpReplyHead::Length() const
{
    bool bNumber = false;
    const qint64 lLength = Value("content-length").split(',').first().trimmed().toLongLong(&bNumber);
    return bNumber && lLength >= 0 && !IsChunked() ? lLength : -1;
}

bool HttpReplyHead::HasDifferingLengths() const
{
    const QList<QByteArray> lengths =
        Values("content-length").isEmpty() ? QList<QByteArray>() : Values("content-length").join(',').split(',');
    for (const QByteArray& length : lengths) {
        if (length.trimmed() != lengths.first().trimmed())
            return true;
    }
    return false;
}

} // namespace KXHost
