#pragma once

#include "Host/Crypto/SealedStream.h"

namespace KXHost {

// An encrypted cloud recording: opened by the record's password together with its key text, both UTF-8.
class RecordEncryptor : public SealedWriter
{
public:
    RecordEncryptor(const std::string& strPassword, const std::string& strKeyText);
};

class RecordDecryptor : public SealedReader
{
public:
    RecordDecryptor(const std::string& strPassword, const std::string& strKeyText);
};

} // namespace KXHost
