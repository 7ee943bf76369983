#include "Host/Crypto/GcmCipher.h"

#include "Host/Crypto/SealedStream.h"

#include <QtCore/qglobal.h>

#include <gcrypt.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace {

// The library tells on the error output what it finds on the machine; only what is wrong matters to us.
Q_ATTRIBUTE_FORMAT_PRINTF(3, 0)
void OnLibraryMessage(void*, int iLevel, const char* pszFormat, va_list arguments)
{
    if (iLevel >= GCRY_LOG_ERROR && iLevel != GCRY_LOG_DEBUG)
        std::vfprintf(stderr, pszFormat, arguments);
}

bool StartLibrary()
{
    static const bool bStarted = [] {
        if (gcry_check_version("1.8.0") == nullptr)
            return false;
        gcry_set_log_handler(OnLibraryMessage, nullptr);
        if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) == 0) {
            gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
            gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        }
        return true;
    }();
    return bStarted;
}

void AppendWithLength(std::string& strText, const std::string& strPart)
{
    const auto uLength = static_cast<std::uint32_t>(strPart.size());
    for (int iShift = 24; iShift >= 0; iShift -= 8)
        strText.push_back(static_cast<char>((uLength >> iShift) & 0xFFU));
    strText += strPart;
}

void Wipe(std::string& strText)
{
    volatile char* pText = strText.data();
    for (std::size_t i = 0; i < strText.size(); ++i)
        pText[i] = 0;
}

} // namespace

namespace KXHost {

bool DeriveKey(const std::vector<std::string>& secrets, const std::string& strSalt, DerivedKey& key)
{
    if (!StartLibrary())
        return false;
    std::string strSecret;
    for (const std::string& strPart : secrets)
        AppendWithLength(strSecret, strPart);
    std::array<unsigned char, 48> material{};
    const gcry_error_t error =
        gcry_kdf_derive(strSecret.data(), strSecret.size(), GCRY_KDF_PBKDF2, GCRY_MD_SHA256, strSalt.data(),
                        strSalt.size(), KeyDerivationRounds, material.size(), material.data());
    std::copy_n(material.begin(), key.cipherKey.size(), key.cipherKey.begin());
    std::copy_n(material.begin() + key.cipherKey.size(), key.keyCheck.size(), key.keyCheck.begin());
    Wipe(strSecret);
    return error == 0;
}

std::string Sha256(const std::string& strData)
{
    StartLibrary();
    std::string strHash(32, '\0');
    gcry_md_hash_buffer(GCRY_MD_SHA256, strHash.data(), strData.data(), strData.size());
    return strHash;
}

std::string RandomBytes(std::size_t uSize)
{
    StartLibrary();
    std::string strBytes(uSize, '\0');
    gcry_create_nonce(strBytes.data(), uSize);
    return strBytes;
}

GcmCipher::~GcmCipher()
{
    gcry_cipher_close(m_pHandle);
}

bool GcmCipher::Open(const DerivedKey& key, const std::string& strIv, const std::string& strAdditional)
{
    return StartLibrary() && m_pHandle == nullptr &&
           gcry_cipher_open(&m_pHandle, GCRY_CIPHER_AES256, GCRY_CIPHER_MODE_GCM, 0) == 0 &&
           gcry_cipher_setkey(m_pHandle, key.cipherKey.data(), key.cipherKey.size()) == 0 &&
           gcry_cipher_setiv(m_pHandle, strIv.data(), strIv.size()) == 0 &&
           gcry_cipher_authenticate(m_pHandle, strAdditional.data(), strAdditional.size()) == 0;
}

bool GcmCipher::Encrypt(char* pData, std::size_t uSize)
{
    return uSize == 0 || gcry_cipher_encrypt(m_pHandle, pData, uSize, nullptr, 0) == 0;
}

bool GcmCipher::Decrypt(char* pData, std::size_t uSize)
{
    return uSize == 0 || gcry_cipher_decrypt(m_pHandle, pData, uSize, nullptr, 0) == 0;
}

bool GcmCipher::Tag(std::string& strTag)
{
    strTag.assign(SealedTagSize, '\0');
    return gcry_cipher_gettag(m_pHandle, strTag.data(), strTag.size()) == 0;
}

bool GcmCipher::CheckTag(const std::string& strTag)
{
    return gcry_cipher_checktag(m_pHandle, strTag.data(), strTag.size()) == 0;
}

} // namespace KXHost
