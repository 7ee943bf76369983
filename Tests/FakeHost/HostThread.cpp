#include "FakeHost/HostThread.h"

#include <future>
#include <memory>
#include <utility>

HostThread::HostThread()
    : m_thread([this] { Loop(); })
{}

HostThread::~HostThread()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bEnding = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

void HostThread::Post(Job job)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_wakeUp.notify_one();
}

void HostThread::Run(const Job& job)
{
    if (std::this_thread::get_id() == m_thread.get_id()) {
        job();
        return;
    }
    const auto pDone = std::make_shared<std::promise<void>>();
    Post([&job, pDone] {
        job();
        pDone->set_value();
    });
    pDone->get_future().wait();
}

void HostThread::Loop()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_wakeUp.wait(lock, [this] { return m_bEnding || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
        lock.lock();
    }
}

bool CallbackBarrier::Enter()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_bOpen)
        ++m_iInside;
    return m_bOpen;
}

void CallbackBarrier::Leave()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    --m_iInside;
    m_empty.notify_all();
}

void CallbackBarrier::Open()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bOpen = true;
}

void CallbackBarrier::Close()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_bOpen = false;
    m_empty.wait(lock, [this] { return m_iInside == 0; });
}
