#include "Host/Site/ByteSource.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

namespace {

constexpr int ShortHeader = 8;
constexpr int LongHeader = 16; // size word 1, then 64-bit size after the type
constexpr std::size_t Step = 1 << 20;

// Twice a step of noise: each step of padding shows a window of it that begins somewhere in its first half.
const std::vector<char>& Noise()
{
    static const std::vector<char> s_noise = [] {
        std::vector<char> noise(2 * Step);
        std::mt19937_64 engine(20240229);
        for (char& c : noise)
            c = static_cast<char>(engine() & 0xFF);
        return noise;
    }();
    return s_noise;
}

// Well mixed, so that neighbouring steps and sizes have windows far apart.
std::size_t WindowOf(qint64 lSize, quint64 uStep)
{
    quint64 uMixed = static_cast<quint64>(lSize) + (uStep + 1) * 0x9E3779B97F4A7C15ULL;
    uMixed = (uMixed ^ (uMixed >> 30)) * 0xBF58476D1CE4E5B9ULL;
    return static_cast<std::size_t>((uMixed ^ (uMixed >> 27)) % Step);
}

QByteArray FreeBoxHeader(qint64 lBox)
{
    QByteArray header(lBox <= std::numeric_limits<quint32>::max() ? ShortHeader : LongHeader, '\0');
    const bool bLong = header.size() == LongHeader;
    qToBigEndian(bLong ? quint32(1) : static_cast<quint32>(lBox), header.data());
    std::copy_n("free", 4, header.begin() + 4);
    if (bLong)
        qToBigEndian(static_cast<quint64>(lBox), header.data() + ShortHeader);
    return header;
}

class PaddedReader final : public KXHost::ByteReader
{
public:
    PaddedReader(const QByteArray& head, qint64 lSize)
        : m_head(head)
        , m_lSize(lSize)
    {}

    std::string_view Next(std::size_t uMost) override
    {
        const std::string_view piece = m_lRead < m_head.size() ? FromHead(uMost) : FromPadding(uMost);
        m_lRead += static_cast<qint64>(piece.size());
        return piece;
    }

private:
    std::string_view FromHead(std::size_t uMost) const
    {
        const auto uLeft = static_cast<std::size_t>(m_head.size() - m_lRead);
        return {m_head.constData() + m_lRead, std::min(uMost, uLeft)};
    }

    // Never beyond a step: the next one begins elsewhere in the noise.
    std::string_view FromPadding(std::size_t uMost) const
    {
        const auto uPlace = static_cast<quint64>(m_lRead - m_head.size());
        const std::size_t uInStep = uPlace % Step;
        const auto uLeft = static_cast<quint64>(m_lSize - m_lRead);
        const auto uSize = static_cast<std::size_t>(std::min<quint64>({uMost, Step - uInStep, uLeft}));
        return {Noise().data() + WindowOf(m_lSize, uPlace / Step) + uInStep, uSize};
    }

    const QByteArray m_head; // sample and box header
    const qint64 m_lSize;
    qint64 m_lRead = 0;
};

class Padded final : public KXHost::ByteSource
{
public:
    Padded(const QByteArray& sample, qint64 lSize)
        : m_lSize(std::max<qint64>(lSize, sample.size() + ShortHeader))
        , m_head(sample + FreeBoxHeader(m_lSize - sample.size()))
    {}

    qint64 Size() const override { return m_lSize; }

    std::unique_ptr<KXHost::ByteReader> Open() const override
    {
        return std::make_unique<PaddedReader>(m_head, m_lSize);
    }

private:
    const qint64 m_lSize;
    const QByteArray m_head;
};

} // namespace

namespace KXHost {

ByteSourcePtr PaddedSource(const QByteArray& sample, qint64 lSize)
{
    return std::make_shared<Padded>(sample, lSize);
}

} // namespace KXHost
