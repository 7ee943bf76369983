#include "Host/KXLogic/HostThreads.h"

#include <QtCore/QMetaObject>

#include <utility>

namespace KXHost {

HostThread::HostThread()
    : m_pContext(new QObject)
{
    m_pContext->moveToThread(this);
    start();
}

HostThread::~HostThread()
{
    quit();
    wait();
}

void HostThread::Post(std::function<void()> task)
{
    QMetaObject::invokeMethod(m_pContext, std::move(task), Qt::QueuedConnection);
}

void HostThread::run()
{
    exec();
    delete m_pContext; // here, where its calls run
}

HostThreads::HostThreads(QtCleanUpFunction pEnd)
    : m_pEnd(pEnd)
{}

HostThreads::~HostThreads()
{
    JoinAll();
}

std::shared_ptr<HttpCall> HostThreads::RunTransfer(const HttpRequest& request, std::shared_ptr<HttpReceiver> pReceiver)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return CanRun() ? m_http.Start(request, std::move(pReceiver)) : nullptr;
}

bool HostThreads::PostAnswer(std::function<void()> task)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!CanRun())
        return false;
    if (!m_pAnswerThread)
        m_pAnswerThread = std::make_unique<HostThread>();
    m_pAnswerThread->Post(std::move(task));
    return true;
}

void HostThreads::JoinAll()
{
    std::unique_ptr<HostThread> pAnswerThread;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        pAnswerThread.swap(m_pAnswerThread);
        m_bEndArranged = false; // Qt forgets the function once it has called it
    }
    // Joined without the lock: a callback that still runs may ask for a thread.
    m_http.End();
}

bool HostThreads::CanRun()
{
    if (QCoreApplication::instance() == nullptr)
        return false;
    if (!m_bEndArranged)
        qAddPostRoutine(m_pEnd);
    m_bEndArranged = true;
    return true;
}

} // namespace KXHost
