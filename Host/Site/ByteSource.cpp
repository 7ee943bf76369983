#include "Host/Site/ByteSource.h"

#include "Host/Crypto/GcmCipher.h"
#include "Host/Crypto/RecordCipher.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <gcrypt.h>

#include <algorithm>

namespace {

constexpr std::size_t Block = 1 << 20;
constexpr std::size_t CipherBlock = 1 << 16; // stays in the processor's cache while it is encrypted

class FileReader final : public KXHost::ByteReader
{
public:
    FileReader(const QString& strPath, qint64 lSize)
        : m_file(strPath)
        , m_lLeft(lSize)
    {
        if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            m_lLeft = 0;
    }

    std::string_view Next(std::size_t uMost) override
    {
        const auto lWanted = std::min<qint64>({static_cast<qint64>(std::min(uMost, Block)), m_lLeft});
        m_buffer.resize(static_cast<std::size_t>(lWanted));
        const qint64 lRead = lWanted > 0 ? m_file.read(m_buffer.data(), lWanted) : 0;
        m_lLeft = lRead > 0 ? m_lLeft - lRead : 0;
        return {m_buffer.data(), static_cast<std::size_t>(std::max<qint64>(lRead, 0))};
    }

private:
    QFile m_file;
    qint64 m_lLeft;
    std::string m_buffer;
};

// Its size is taken once, so that what is announced and what the catalogue says stay the same.
class File final : public KXHost::ByteSource
{
public:
    explicit File(const QString& strPath)
        : m_strPath(strPath)
        , m_lSize(QFileInfo(strPath).size())
    {}

    qint64 Size() const override { return m_lSize; }
    std::unique_ptr<KXHost::ByteReader> Open() const override
    {
        return std::make_unique<FileReader>(m_strPath, m_lSize);
    }

private:
    const QString m_strPath;
    const qint64 m_lSize;
};

// Gives the header, the cipher text piece by piece, and the tag.
class SealedSourceReader final : public KXHost::ByteReader
{
public:
    // A cipher that does not start gives no bytes, which ends the connection.
    SealedSourceReader(std::unique_ptr<KXHost::ByteReader> pClear, const std::string& strPassword,
                       const std::string& strKeyText)
        : m_pClear(std::move(pClear))
        , m_encryptor(strPassword, strKeyText)
    {
        m_bOver = m_encryptor.Begin(m_buffer) != KXHost::CipherResult::Ok;
    }

    std::string_view Next(std::size_t uMost) override
    {
        if (m_uGiven == m_buffer.size() && !Refill())
            return {};
        const std::size_t uSize = std::min(uMost, m_buffer.size() - m_uGiven);
        m_uGiven += uSize;
        return {m_buffer.data() + m_uGiven - uSize, uSize};
    }

private:
    bool Refill()
    {
        m_uGiven = 0;
        m_buffer.clear();
        if (m_bOver)
            return false;
        const std::string_view clear = m_pClear->Next(CipherBlock);
        m_bOver = clear.empty();
        const KXHost::CipherResult result =
            m_bOver ? m_encryptor.End(m_buffer) : m_encryptor.Update(clear.data(), clear.size(), m_buffer);
        m_bOver = m_bOver || result != KXHost::CipherResult::Ok;
        return result == KXHost::CipherResult::Ok;
    }

    std::unique_ptr<KXHost::ByteReader> m_pClear;
    KXHost::RecordEncryptor m_encryptor;
    std::string m_buffer;
    std::size_t m_uGiven = 0;
    bool m_bOver = false;
};

class Sealed final : public KXHost::ByteSource
{
public:
    Sealed(KXHost::ByteSourcePtr pClear, const std::string& strPassword, const std::string& strKeyText)
        : m_pClear(std::move(pClear))
        , m_strPassword(strPassword)
        , m_strKeyText(strKeyText)
    {}

    qint64 Size() const override { return m_pClear->Size() + static_cast<qint64>(KXHost::SealedOverhead); }
    std::unique_ptr<KXHost::ByteReader> Open() const override
    {
        return std::make_unique<SealedSourceReader>(m_pClear->Open(), m_strPassword, m_strKeyText);
    }

private:
    const KXHost::ByteSourcePtr m_pClear;
    const std::string m_strPassword;
    const std::string m_strKeyText;
};

} // namespace

namespace KXHost {

ByteSourcePtr FileSource(const QString& strPath)
{
    return std::make_shared<File>(strPath);
}

ByteSourcePtr SealedSource(ByteSourcePtr pClear, const std::string& strPassword, const std::string& strKeyText)
{
    return std::make_shared<Sealed>(std::move(pClear), strPassword, strKeyText);
}

QString HashOf(const ByteSource& source)
{
    Sha256({}); // starts the library
    gcry_md_hd_t pHash = nullptr;
    if (gcry_md_open(&pHash, GCRY_MD_SHA256, 0) != 0)
        return {};
    qint64 lRead = 0;
    const auto pReader = source.Open();
    for (auto piece = pReader->Next(Block); !piece.empty(); piece = pReader->Next(Block)) {
        gcry_md_write(pHash, piece.data(), piece.size());
        lRead += static_cast<qint64>(piece.size());
    }
    const void* pDigest = gcry_md_read(pHash, GCRY_MD_SHA256);
    const QByteArray digest(static_cast<const char*>(pDigest), 32);
    gcry_md_close(pHash);
    return lRead == source.Size() ? QString::fromLatin1(digest.toHex()) : QString();
}

} // namespace KXHost
