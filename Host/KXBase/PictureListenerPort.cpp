#include "Host/KXBase/PictureListenerPort.h"

#include "KXBase/IPictureDownloaderListener.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QThread>
#include <QtCore/QWaitCondition>

struct PictureListenerPort::State
{
    QMutex mutex; // guards both below; not held during a call
    QWaitCondition idle;
    IPictureDownloaderListener* pListener = nullptr; // not owned; null when closed
    int iCalls = 0;                                  // running now, nested ones too
};

PictureListenerPort::PictureListenerPort(IPictureDownloaderListener* pListener)
    : m_pState(std::make_shared<State>())
{
    m_pState->pListener = pListener;
}

PictureListenerPort::~PictureListenerPort() = default;

void PictureListenerPort::Post(int iResult, const QString& strUrl, const QString& strLocalPath)
{
    const auto deliver = [pState = m_pState, iResult, strUrl, strLocalPath] {
        Deliver(*pState, iResult, strUrl, strLocalPath);
    };
    QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
}

void PictureListenerPort::Deliver(State& state, int iResult, const QString& strUrl, const QString& strLocalPath)
{
    QMutexLocker lock(&state.mutex);
    IPictureDownloaderListener* const pListener = state.pListener;
    if (pListener == nullptr)
        return;
    ++state.iCalls;
    lock.unlock();
    pListener->OnPictureDownloaded(iResult, strUrl, strLocalPath);
    lock.relock();
    --state.iCalls;
    state.idle.wakeAll();
}

void PictureListenerPort::Close()
{
    const std::shared_ptr<State> pState = m_pState;
    const bool bOwnThread = QThread::currentThread() == thread();
    QMutexLocker lock(&pState->mutex);
    pState->pListener = nullptr;
    deleteLater(); // before the wait: the listener's thread may end with the call that runs
    while (pState->iCalls > 0 && !bOwnThread)
        pState->idle.wait(&pState->mutex);
}
