#pragma once

#include "Host/Crypto/RecordCipher.h"
#include "Host/KXLogic/RunningTransfers.h"
#include "Host/KXLogic/TransferOutcome.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>

#include <memory>
#include <mutex>
#include <string>

namespace KXHost {

// Where a transfer's bytes go: a file, through the decryptor if there is one, and compared with what is expected. The
// file is created, and an older one replaced, only when the first byte of the recording is there, so that a refused
// transfer leaves nothing behind. Thread: any; one thread writes while another may Stop.
class RecordSink
{
public:
    RecordSink(const QString& strFilePath, std::unique_ptr<RecordDecryptor> pDecryptor, ExpectedRecording expected);

    // Whether it knows when something is missing at the end.
    bool CanTellWhole() const;
    // `uClearSize` is the count of bytes of the recording that came out. Any outcome but Running is final.
    TransferOutcome Write(const char* pData, std::size_t uSize, std::size_t& uClearSize);
    // Finished when every byte is in the closed file and it is what was expected.
    TransferOutcome Finish();
    // When it returns, the file is closed and is written no more.
    void Stop();
    bool IsStopped() const;

private:
    bool Open();
    bool WriteAll(const char* pData, qint64 lSize);
    TransferOutcome FileFailure();
    TransferOutcome CipherFailure(CipherResult result) const;
    QString Surprise();

    mutable std::mutex m_mutex; // guards all below
    QFile m_file;
    const std::unique_ptr<RecordDecryptor> m_pDecryptor;
    const ExpectedRecording m_expected;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    std::string m_strClear;
    qint64 m_lWritten = 0;
    bool m_bOpened = false;
    bool m_bStopped = false;
};

} // namespace KXHost
