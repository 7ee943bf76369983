#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPair>

#include <cstddef>

namespace KXHost {

// The head of an answer as its lines come in. Interim answers (100, 103) before it are forgotten, trailers behind the
// body are not looked at.
class HttpReplyHead
{
public:
    static constexpr std::size_t MostBytes = 256 * 1024;

    // False when the heads of one request are too large together.
    bool Add(const char* pLine, std::size_t uSize);

    bool HasBegun() const { return m_uSize > 0; }
    bool IsComplete() const { return m_bComplete; }
    int Status() const { return m_iStatus; }
    // All values of a field, in their order; `strName` in lower case.
    QList<QByteArray> Values(const QByteArray& strName) const;
    QByteArray Value(const QByteArray& strName) const { return Values(strName).value(0); }

    bool IsChunked() const;
    // -1 when it is not said or does not count.
    qint64 Length() const;
    bool HasDifferingLengths() const;

private:
    void Begin(const QByteArray& statusLine);

    std::size_t m_uSize = 0;
    int m_iStatus = 0;
    bool m_bComplete = false;
    QList<QPair<QByteArray, QByteArray>> m_fields; // names in lower case
};

} // namespace KXHost
