#include "Host/Crypto/SealedStream.h"

#include "Host/Crypto/GcmCipher.h"

#include <algorithm>

namespace {

constexpr std::size_t MagicSize = 8;
constexpr std::size_t SaltSize = 16;
constexpr std::size_t IvSize = 12;
constexpr std::size_t KeyCheckOffset = MagicSize + SaltSize + IvSize;
constexpr std::size_t KeyCheckSize = 16;
constexpr std::size_t ChecksumOffset = KeyCheckOffset + KeyCheckSize;
constexpr std::size_t ChecksumSize = KXHost::SealedHeaderSize - ChecksumOffset;

std::string Magic(KXHost::SealedKind kind)
{
    switch (kind) {
    case KXHost::SealedKind::Recording:
        return "KXREC001";
    case KXHost::SealedKind::Picture:
        return "KXPIC001";
    case KXHost::SealedKind::DevicePassword:
        break;
    }
    return "KXPWD001";
}

std::string Checksum(const std::string& strHeader)
{
    return KXHost::Sha256(strHeader.substr(0, ChecksumOffset)).substr(0, ChecksumSize);
}

std::string KeyCheck(const KXHost::DerivedKey& key)
{
    return std::string(key.keyCheck.begin(), key.keyCheck.end());
}

} // namespace

namespace KXHost {

const char* CipherResultText(CipherResult result)
{
    switch (result) {
    case CipherResult::Ok:
        return "ok";
    case CipherResult::NotSealed:
        return "not encrypted data";
    case CipherResult::WrongKey:
        return "wrong key";
    case CipherResult::Damaged:
        return "damaged data";
    case CipherResult::Truncated:
        return "truncated data";
    case CipherResult::Failed:
        break;
    }
    return "cipher failure";
}

struct SealedWriter::State
{
    std::string strMagic;
    std::vector<std::string> secrets;
    GcmCipher cipher;
};

SealedWriter::SealedWriter(SealedKind kind, const std::vector<std::string>& secrets)
    : m_pState(std::make_unique<State>())
{
    m_pState->strMagic = Magic(kind);
    m_pState->secrets = secrets;
}

SealedWriter::~SealedWriter() = default;
SealedWriter::SealedWriter(SealedWriter&&) noexcept = default;
SealedWriter& SealedWriter::operator=(SealedWriter&&) noexcept = default;

CipherResult SealedWriter::Begin(std::string& strOut)
{
    const std::string strSalt = RandomBytes(SaltSize);
    const std::string strIv = RandomBytes(IvSize);
    DerivedKey key;
    if (!DeriveKey(m_pState->secrets, strSalt, key))
        return CipherResult::Failed;
    strOut = m_pState->strMagic + strSalt + strIv + KeyCheck(key);
    strOut += Checksum(strOut);
    return m_pState->cipher.Open(key, strIv, strOut) ? CipherResult::Ok : CipherResult::Failed;
}

CipherResult SealedWriter::Update(const char* pData, std::size_t uSize, std::string& strOut)
{
    strOut.assign(pData, uSize);
    return m_pState->cipher.Encrypt(strOut.data(), strOut.size()) ? CipherResult::Ok : CipherResult::Failed;
}

CipherResult SealedWriter::End(std::string& strOut)
{
    return m_pState->cipher.Tag(strOut) ? CipherResult::Ok : CipherResult::Failed;
}

struct SealedReader::State
{
    CipherResult ReadHeader(const char*& pData, std::size_t& uSize);
    CipherResult OpenHeader();

    std::string strMagic;
    std::vector<std::string> secrets;
    std::string strHeader;
    std::string strTail; // the last bytes so far: they are the tag when nothing follows
    GcmCipher cipher;
    CipherResult result = CipherResult::Ok;
};

// Takes header bytes off the front of the data.
CipherResult SealedReader::State::ReadHeader(const char*& pData, std::size_t& uSize)
{
    const std::size_t uTaken = std::min(SealedHeaderSize - strHeader.size(), uSize);
    strHeader.append(pData, uTaken);
    pData += uTaken;
    uSize -= uTaken;
    const std::size_t uMagic = std::min(strHeader.size(), MagicSize);
    if (strHeader.compare(0, uMagic, strMagic, 0, uMagic) != 0)
        return CipherResult::NotSealed;
    return uTaken > 0 && strHeader.size() == SealedHeaderSize ? OpenHeader() : CipherResult::Ok;
}

CipherResult SealedReader::State::OpenHeader()
{
    if (strHeader.compare(ChecksumOffset, ChecksumSize, Checksum(strHeader)) != 0)
        return CipherResult::Damaged;
    DerivedKey key;
    if (!DeriveKey(secrets, strHeader.substr(MagicSize, SaltSize), key))
        return CipherResult::Failed;
    if (strHeader.compare(KeyCheckOffset, KeyCheckSize, KeyCheck(key)) != 0)
        return CipherResult::WrongKey;
    const std::string strIv = strHeader.substr(MagicSize + SaltSize, IvSize);
    return cipher.Open(key, strIv, strHeader) ? CipherResult::Ok : CipherResult::Failed;
}

SealedReader::SealedReader(SealedKind kind, const std::vector<std::string>& secrets)
    : m_pState(std::make_unique<State>())
{
    m_pState->strMagic = Magic(kind);
    m_pState->secrets = secrets;
}

SealedReader::~SealedReader() = default;
SealedReader::SealedReader(SealedReader&&) noexcept = default;
SealedReader& SealedReader::operator=(SealedReader&&) noexcept = default;

CipherResult SealedReader::Update(const char* pData, std::size_t uSize, std::string& strOut)
{
    State& state = *m_pState;
    strOut.clear();
    if (state.result == CipherResult::Ok)
        state.result = state.ReadHeader(pData, uSize);
    if (state.result != CipherResult::Ok || uSize == 0)
        return state.result;
    const std::size_t uClear =
        state.strTail.size() + uSize > SealedTagSize ? state.strTail.size() + uSize - SealedTagSize : 0;
    const std::size_t uFromTail = std::min(state.strTail.size(), uClear);
    strOut.assign(state.strTail, 0, uFromTail);
    strOut.append(pData, uClear - uFromTail);
    state.strTail.erase(0, uFromTail);
    state.strTail.append(pData + (uClear - uFromTail), uSize - (uClear - uFromTail));
    if (!state.cipher.Decrypt(strOut.data(), strOut.size()))
        state.result = CipherResult::Failed;
    return state.result;
}

CipherResult SealedReader::End()
{
    State& state = *m_pState;
    if (state.result != CipherResult::Ok)
        return state.result;
    if (state.strHeader.size() < SealedHeaderSize || state.strTail.size() < SealedTagSize)
        state.result = CipherResult::Truncated;
    else if (!state.cipher.CheckTag(state.strTail))
        state.result = CipherResult::Damaged;
    return state.result;
}

CipherResult SealWhole(SealedKind kind, const std::vector<std::string>& secrets, const std::string& strClear,
                       std::string& strSealed)
{
    SealedWriter writer(kind, secrets);
    std::string strHeader;
    std::string strBody;
    std::string strTag;
    CipherResult result = writer.Begin(strHeader);
    if (result == CipherResult::Ok)
        result = writer.Update(strClear.data(), strClear.size(), strBody);
    if (result == CipherResult::Ok)
        result = writer.End(strTag);
    if (result == CipherResult::Ok)
        strSealed = strHeader + strBody + strTag;
    return result;
}

CipherResult OpenWhole(SealedKind kind, const std::vector<std::string>& secrets, const std::string& strSealed,
                       std::string& strClear)
{
    SealedReader reader(kind, secrets);
    std::string strBody;
    CipherResult result = reader.Update(strSealed.data(), strSealed.size(), strBody);
    if (result == CipherResult::Ok)
        result = reader.End();
    if (result == CipherResult::Ok)
        strClear = std::move(strBody);
    return result;
}

} // namespace KXHost
