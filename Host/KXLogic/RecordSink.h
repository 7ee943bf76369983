#pragma once

#include "Host/Crypto/RecordCipher.h"
#include "Host/KXLogic/TransferOutcome.h"

#include <QtCore/QFile>

#include <memory>
#include <mutex>
#include <string>

namespace KXHost {

// Where a transfer's bytes go: a file, through the decryptor if there is one. The file is created, and an older one
// replaced, only when the first byte of the recording is there, so that a refused transfer leaves nothing behind.
// Thread: any; one thread writes while another may Stop.
class RecordSink
{
public:
    RecordSink(const QString& strFilePath, std::unique_ptr<RecordDecryptor> pDecryptor);

    // `uClearSize` is the count of bytes of the recording that came out. Any outcome but Running is final.
    TransferOutcome Write(const char* pData, std::size_t uSize, std::size_t& uClearSize);
    // Finished when every byte is in the closed file.
    TransferOutcome Finish();
    // When it returns, the file is closed and is written no more.
    void Stop();
    bool IsStopped() const;

private:
    bool Open();
    TransferOutcome FileFailure();
    TransferOutcome CipherFailure(CipherResult result) const;

    mutable std::mutex m_mutex; // guards all below
    QFile m_file;
    std::unique_ptr<RecordDecryptor> m_pDecryptor;
    std::string m_strClear;
    bool m_bOpened = false;
    bool m_bStopped = false;
};

} // namespace KXHost
