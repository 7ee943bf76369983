#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

// The one cipher format of the reference client: recordings, cover pictures and device passwords are all sealed in it.
//
//   offset  bytes  content
//        0      8  magic, which tells the kind: "KXREC001", "KXPIC001", "KXPWD001"
//        8     16  salt, random
//       24     12  initial vector, random
//       36     16  key check
//       52     12  header checksum: the first bytes of SHA-256 over the bytes 0 to 51
//       64      n  AES-256-GCM cipher text, as long as the clear text; the header is its additional data
//   64 + n     16  GCM tag
//
// AES key (32 bytes) and key check (16 bytes) are the 48 bytes that PBKDF2-HMAC-SHA256 gives for the secrets and the
// salt, with KeyDerivationRounds rounds. Each secret enters with its length as 4 bytes, big endian, before it, so
// that no two lists of secrets give one text. What a reader finds is therefore never guessed: no magic is no sealed
// data, a bad checksum is a damaged header, a key check that differs in a sound header is a wrong key, and a bad tag
// under the right key is damaged data.
namespace KXHost {

constexpr std::size_t SealedHeaderSize = 64;
constexpr std::size_t SealedTagSize = 16;
constexpr std::size_t SealedOverhead = SealedHeaderSize + SealedTagSize; // sealed size minus clear size
constexpr unsigned long KeyDerivationRounds = 8192;                      // some milliseconds for one derivation

// The numbers are those of ICloudLogic::DecryptPicture.
enum class CipherResult {
    Ok = 0,
    NotSealed = 1, // does not begin with the magic
    WrongKey = 2,
    Damaged = 3,
    Truncated = 4,
    Failed = 5, // the cipher library refused to work, or more than 64 GiB in one stream
};

const char* CipherResultText(CipherResult result);

enum class SealedKind {
    Recording,
    Picture,
    DevicePassword,
};

// Seals a stream: Begin, any number of Update, End; what each of them puts into `strOut` (replaced, its capacity is
// reused) is the next part of the sealed stream. Thread: one at a time.
class SealedWriter
{
public:
    SealedWriter(SealedKind kind, const std::vector<std::string>& secrets);
    ~SealedWriter();
    SealedWriter(SealedWriter&&) noexcept;
    SealedWriter& operator=(SealedWriter&&) noexcept;

    CipherResult Begin(std::string& strOut);
    CipherResult Update(const char* pData, std::size_t uSize, std::string& strOut);
    CipherResult End(std::string& strOut);

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

// Opens a sealed stream that comes in pieces of any size. A wrong key is told by the Update that completes the header.
// Nothing that Update gave may be trusted before End gave Ok; after any other result the stream is over. Thread: one at
// a time.
class SealedReader
{
public:
    SealedReader(SealedKind kind, const std::vector<std::string>& secrets);
    ~SealedReader();
    SealedReader(SealedReader&&) noexcept;
    SealedReader& operator=(SealedReader&&) noexcept;

    CipherResult Update(const char* pData, std::size_t uSize, std::string& strOut);
    CipherResult End();

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

// The same for data that is whole in memory; the result text is set only when the result is Ok. Thread: any.
CipherResult SealWhole(SealedKind kind, const std::vector<std::string>& secrets, const std::string& strClear,
                       std::string& strSealed);
CipherResult OpenWhole(SealedKind kind, const std::vector<std::string>& secrets, const std::string& strSealed,
                       std::string& strClear);

} // namespace KXHost
