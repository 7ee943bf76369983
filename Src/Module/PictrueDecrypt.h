#pragma once

#include "ktl/TMutex.h"

#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtCore/QWaitCondition>

#include <atomic>
#include <queue>

namespace KXLogic {
class ICloudLogic;
}

struct PictureDecryptJob
{
    QString strUrl;
    QString strLocalPath; // the downloaded, still encrypted picture
    QString strPictureKey;
    QString strDeviceId;
    QString strPassword;
    QString strDownloadPath; // target file of the recording; the picture is saved beside it
};

// The one thread that decrypts cover pictures, one after the other in the order of their jobs.
//
// Start, Stop and Enqueue are called on the thread that owns the object; the signal is emitted on this thread itself.
// Only the queue of jobs is shared. Destroying the object stops it first.
class PictrueDecrypt : public QThread
{
    Q_OBJECT

public:
    // `pCloudLogic` decrypts; it must outlive the thread and may be null, then no job is taken. `pParent` may be null;
    // of a job whose file cannot be read it is told by its slot OnPictureUnreadable(QString strUrl, QString
    // strDownloadPath), queued, in place of the signal.
    PictrueDecrypt(KXLogic::ICloudLogic* pCloudLogic, QObject* pParent);
    ~PictrueDecrypt() override;

    void Start();
    // Returns when the thread has ended; a job that is being decrypted is finished first, though a picture that is
    // being decoded is given up; waiting ones are dropped.
    void Stop();
    void Enqueue(const PictureDecryptJob& job);

signals:
    // `iResult` is the host's: 0 and the path of the clear picture, or not 0 and an empty path.
    void SignalDecrptPictrueFinished(int iResult, QString strUrl, QString strDecrptLocalPicpath);

protected:
    void run() override;

private:
    bool TakeJob(PictureDecryptJob& job);
    void WaitForWork();
    void Wake();
    void Decrypt(const PictureDecryptJob& job);
    bool SavePicture(const PictureDecryptJob& job, const QByteArray& bytes, const QString& strPath);
    void TellUnreadable(const PictureDecryptJob& job);

    KXLogic::ICloudLogic* m_pCloudLogic;
    std::queue<PictureDecryptJob> m_jobs;
    ktl::TMutex m_jobsLock; // guards the queue
    std::atomic<bool> m_bRunning{false};
    QMutex m_wakeMutex;
    QWaitCondition m_wake;
    bool m_bWoken = false; // guarded by m_wakeMutex
};
