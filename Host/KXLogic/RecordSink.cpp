#include "Host/KXLogic/RecordSink.h"

#include "Host/KXLogic/TargetPath.h"

#include <utility>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>
#endif

namespace KXHost {

namespace {

#ifdef Q_OS_WIN
constexpr int DiskFull = ERROR_DISK_FULL;
#else
constexpr int DiskFull = ENOSPC;
#endif

QString SizeText(qint64 lBytes)
{
    constexpr qint64 Mega = 1000 * 1000;
    return lBytes < Mega ? QStringLiteral("%1 bytes").arg(lBytes) : QStringLiteral("%1 MB").arg(lBytes / Mega);
}

} // namespace

RecordSink::RecordSink(const QString& strFilePath, std::unique_ptr<RecordDecryptor> pDecryptor,
                       ExpectedRecording expected)
    : m_file(strFilePath)
    , m_pDecryptor(std::move(pDecryptor))
    , m_expected(std::move(expected))
{}

// An encrypted recording has a seal at its end.
bool RecordSink::CanTellWhole() const
{
    return m_expected.lSize >= 0 || !m_expected.strSha256.isEmpty() || m_pDecryptor != nullptr;
}

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
    if (!WriteAll(pData, static_cast<qint64>(uSize)))
        return FileFailure();
    uClearSize = uSize;
    if (!m_expected.strSha256.isEmpty())
        m_hash.addData(pData, static_cast<int>(uSize));
    if (m_expected.lSize >= 0 && m_lWritten > m_expected.lSize)
        return {TransferState::Failed,
                QStringLiteral("more arrives than the %1 bytes that the recording has").arg(m_expected.lSize)};
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
    const QString strSurprise = Surprise();
    return {strSurprise.isEmpty() ? TransferState::Finished : TransferState::Failed, strSurprise};
}

// How the recording differs from what was expected; empty when it does not.
QString RecordSink::Surprise()
{
    if (m_expected.lSize >= 0 && m_lWritten != m_expected.lSize)
        return QStringLiteral("what arrived has %1 bytes instead of %2").arg(m_lWritten).arg(m_expected.lSize);
    if (m_expected.strSha256.isEmpty())
        return QString();
    const QString strFound = QString::fromLatin1(m_hash.result().toHex());
    return strFound == m_expected.strSha256
               ? QString()
               : QStringLiteral("what arrived is another recording: it has SHA-256 %1").arg(strFound);
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

// A write that took a part is followed by one that says why it was not all.
bool RecordSink::WriteAll(const char* pData, qint64 lSize)
{
    if (!Open())
        return false;
    while (lSize > 0) {
        const qint64 lWritten = m_file.write(pData, lSize);
        if (lWritten <= 0)
            return false;
        pData += lWritten;
        lSize -= lWritten;
        m_lWritten += lWritten;
    }
    return true;
}

TransferOutcome RecordSink::FileFailure()
{
    const QString strProblem = TargetProblem(m_file.fileName());
    if (!strProblem.isEmpty())
        return {TransferState::Failed, QStringLiteral("the file cannot be written: ") + strProblem};
    if (m_file.errorString() == qt_error_string(DiskFull))
        return {TransferState::Failed, m_expected.lSize < 0
                                           ? QStringLiteral("the disk is full: %1 written").arg(SizeText(m_lWritten))
                                           : QStringLiteral("the disk is full: %1 of %2 written")
                                                 .arg(SizeText(m_lWritten), SizeText(m_expected.lSize))};
    return {TransferState::Failed, QStringLiteral("the file cannot be written: ") + m_file.errorString()};
}

TransferOutcome RecordSink::CipherFailure(CipherResult result) const
{
    return {result == CipherResult::WrongKey ? TransferState::Refused : TransferState::Failed,
            QStringLiteral("the recording cannot be decrypted: ") + QString::fromLatin1(CipherResultText(result))};
}

} // namespace KXHost
