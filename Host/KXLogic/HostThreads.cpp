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
    delete m_pContext; // here, for its children belong to this thread
}

HostThreads::HostThreads(QtCleanUpFunction pEnd)
    : m_pEnd(pEnd)
{}

HostThreads::~HostThreads()
{
    JoinAll();
}

bool HostThreads::RunTransfer(const std::function<void(HostThread&)>& task)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    HostThread* const pThread = CanRun() ? TakeIdle() : nullptr;
    if (pThread == nullptr)
        return false;
    pThread->m_bBusy = true;
    pThread->Post([task, pThread] { task(*pThread); });
    return true;
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
    std::vector<std::unique_ptr<HostThread>> transferThreads;
    std::unique_ptr<HostThread> pAnswerThread;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        transferThreads.swap(m_transferThreads);
        pAnswerThread.swap(m_pAnswerThread);
        m_bEndArranged = false; // Qt forgets the function once it has called it
    }
    // Joined by leaving the scope, without the lock: a callback that still runs may ask for a thread.
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

HostThread* HostThreads::TakeIdle()
{
    for (const auto& pThread : m_transferThreads) {
        if (!pThread->m_bBusy)
            return pThread.get();
    }
    if (m_transferThreads.size() >= MaxTransfers)
        return nullptr;
    m_transferThreads.push_back(std::make_unique<HostThread>());
    return m_transferThreads.back().get();
}

} // namespace KXHost
