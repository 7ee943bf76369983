#include "Host/KXLogic/RecordSink.h"

#include "Host/KXLogic/TargetPath.h"

#include <utility>

namespace KXHost {

RecordSink::RecordSink(const QString& strFilePath, std::unique_ptr<RecordDecryptor> pDecryptor)
    : m_file(strFilePath)
    , m_pDecryptor(std::move(pDecryptor))
{}

TransferOutcome RecordSink::Write(const char* pData, std::size_t uSize, std::size_t& uClearSize)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    uClearSize = 0;
    if (m_bStopped)
        return {TransferState::Stopped, QString()};
    if (m_pDecryptor) {
        const CipherResult result = m_pDecryptor->Update(pData, uSize, m_strClear);
        if (result != CipherResult::Ok)
            return CipherFailure(result);
        pData = m_strClear.data();
        uSize = m_strClear.size();
    }
    if (uSize == 0)
        return {};
    if (!Open() || m_file.write(pData, static_cast<qint64>(uSize)) != static_cast<qint64>(uSize))
        return FileFailure();
    uClearSize = uSize;
    return {};
}

TransferOutcome RecordSink::Finish()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_bStopped)
        return {TransferState::Stopped, QString()};
    if (m_pDecryptor) {
        const CipherResult result = m_pDecryptor->End();
        if (result != CipherResult::Ok)
            return CipherFailure(result);
    }
    if (!Open() || !m_file.flush() || m_file.error() != QFileDevice::NoError)
        return FileFailure();
    m_file.close();
    if (m_file.error() != QFileDevice::NoError)
        return FileFailure();
    return {TransferState::Finished, QString()};
}

void RecordSink::Stop()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bStopped = true;
    m_file.close();
}

bool RecordSink::IsStopped() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_bStopped;
}

// Unbuffered: the pieces are large already, and a full disk is told by the very write.
bool RecordSink::Open()
{
    if (!m_bOpened && TargetProblem(m_file.fileName()).isEmpty())
        m_bOpened = m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
    return m_bOpened;
}

TransferOutcome RecordSink::FileFailure()
{
    const QString strProblem = TargetProblem(m_file.fileName());
    return {TransferState::Failed,
            QStringLiteral("cannot write the file: ") + (strProblem.isEmpty() ? m_file.errorString() : strProblem)};
}

TransferOutcome RecordSink::CipherFailure(CipherResult result) const
{
    return {result == CipherResult::WrongKey ? TransferState::Refused : TransferState::Failed,
            QStringLiteral("cannot decrypt: ") + QString::fromLatin1(CipherResultText(result))};
}

} // namespace KXHost
