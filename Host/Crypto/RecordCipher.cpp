#include "Host/Crypto/RecordCipher.h"

namespace KXHost {

RecordEncryptor::RecordEncryptor(const std::string& strPassword, const std::string& strKeyText)
    : SealedWriter(SealedKind::Recording, {strPassword, strKeyText})
{}

RecordDecryptor::RecordDecryptor(const std::string& strPassword, const std::string& strKeyText)
    : SealedReader(SealedKind::Recording, {strPassword, strKeyText})
{}

} // namespace KXHost
