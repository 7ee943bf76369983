#include "Module/PictrueDecrypt.h"

#include "KXLogic/KXLogicModules.h"
#include "Module/EngineLog.h"
#include "Module/PicturePath.h"
#include "Module/SafePicture.h"

#include <QtCore/QFile>

#include <mutex>

namespace {

constexpr unsigned long IdleWaitMs = 5000; // only guards against a missed wake-up

} // namespace

PictrueDecrypt::PictrueDecrypt(KXLogic::ICloudLogic* pCloudLogic, QObject* pParent)
    : QThread(pParent)
    , m_pCloudLogic(pCloudLogic)
{}

PictrueDecrypt::~PictrueDecrypt()
{
    Stop();
}

void PictrueDecrypt::Start()
{
    if (m_bRunning.exchange(true))
        return;
    start(QThread::InheritPriority);
}

void PictrueDecrypt::Stop()
{
    m_bRunning = false;
    requestInterruption(); // for the picture under way
    Wake();
    quit();
    wait();
    const std::lock_guard<ktl::TMutex> lock(m_jobsLock);
    m_jobs = {};
}

void PictrueDecrypt::Enqueue(const PictureDecryptJob& job)
{
    {
        const std::lock_guard<ktl::TMutex> lock(m_jobsLock);
        m_jobs.push(job);
    }
    Wake();
}

void PictrueDecrypt::Wake()
{
    const QMutexLocker lock(&m_wakeMutex);
    m_bWoken = true;
    m_wake.wakeAll();
}

// Runs on this thread. The queue is looked at before the wait, so that jobs queued together run back to back.
void PictrueDecrypt::run()
{
    PictureDecryptJob job;
    while (m_bRunning) {
        if (TakeJob(job))
            Decrypt(job);
        else
            WaitForWork();
    }
}

bool PictrueDecrypt::TakeJob(PictureDecryptJob& job)
{
    const std::lock_guard<ktl::TMutex> lock(m_jobsLock);
    if (m_jobs.empty())
        return false;
    job = std::move(m_jobs.front());
    m_jobs.pop();
    return true;
}

void PictrueDecrypt::WaitForWork()
{
    const QMutexLocker lock(&m_wakeMutex);
    if (!m_bWoken)
        m_wake.wait(&m_wakeMutex, IdleWaitMs);
    m_bWoken = false;
}

void PictrueDecrypt::Decrypt(const PictureDecryptJob& job)
{
    if (!m_pCloudLogic)
        return;
    QByteArray bytes;
    if (!SafePicture::ReadFile(job.strLocalPath, bytes)) {
        TellUnreadable(job);
        return;
    }
    std::string strClear;
    const int iResult =
        m_pCloudLogic->DecryptPicture(bytes.toBase64().toStdString(), job.strPictureKey.toStdString(),
                                      job.strDeviceId.toStdString(), job.strPassword.toStdString(), strClear);
    if (iResult != 0) {
        emit SignalDecrptPictrueFinished(iResult, job.strUrl, QString());
        return;
    }
    const QString strPath = PicturePathOf(job.strDownloadPath);
    if (SavePicture(job, QByteArray::fromBase64(QString::fromStdString(strClear).toLocal8Bit()), strPath))
        emit SignalDecrptPictrueFinished(0, job.strUrl, strPath);
}

// False when it was given up. A recording whose path has no ".mp4" is its own picture path: what was already received
// is never overwritten.
bool PictrueDecrypt::SavePicture(const PictureDecryptJob& job, const QByteArray& bytes, const QString& strPath)
{
    if ((strPath == job.strDownloadPath && QFile::exists(strPath)) || SafePicture::Save(bytes, strPath))
        return true;
    if (isInterruptionRequested())
        return false;
    KX_ENGINE_LOG(LogFailure, "PictrueDecrypt::Decrypt", "no picture[%s]", strPath.toUtf8().constData());
    return true;
}

// Posted like the signal, so that the owner hears of the jobs in their order.
void PictrueDecrypt::TellUnreadable(const PictureDecryptJob& job)
{
    if (isInterruptionRequested())
        return;
    const auto tell = [this, job] {
        if (parent())
            QMetaObject::invokeMethod(parent(), "OnPictureUnreadable", Q_ARG(QString, job.strUrl),
                                      Q_ARG(QString, job.strDownloadPath));
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}
