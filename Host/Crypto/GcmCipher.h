#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

struct gcry_cipher_handle;

namespace KXHost {

struct DerivedKey
{
    std::array<unsigned char, 32> cipherKey{};
    std::array<unsigned char, 16> keyCheck{};
};

// The library is started on first use, from whatever thread. False when it refuses.
bool DeriveKey(const std::vector<std::string>& secrets, const std::string& strSalt, DerivedKey& key);
std::string Sha256(const std::string& strData);
std::string RandomBytes(std::size_t uSize);

// AES-256 in GCM, forward only.
class GcmCipher
{
public:
    GcmCipher() = default;
    ~GcmCipher();
    GcmCipher(const GcmCipher&) = delete;
    GcmCipher& operator=(const GcmCipher&) = delete;

    bool Open(const DerivedKey& key, const std::string& strIv, const std::string& strAdditional);
    // In place.
    bool Encrypt(char* pData, std::size_t uSize);
    bool Decrypt(char* pData, std::size_t uSize);
    bool Tag(std::string& strTag);
    bool CheckTag(const std::string& strTag);

private:
    gcry_cipher_handle* m_pHandle = nullptr;
};

} // namespace KXHost
