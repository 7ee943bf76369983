#pragma once

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace KXHost {

// Callbacks by user, called with no lock held. Remove is the barrier that the contract promises: when it returns, no
// call for that user is running or will run. A call that the removing thread is itself inside of is not waited for.
// Thread: any.
template <typename... Args>
class CallbackList
{
public:
    using Function = std::function<void(Args...)>;

    // The only callback from now on; an empty function leaves none.
    void Replace(const void* pUser, Function function)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_entries.clear();
        if (function)
            m_entries.emplace_back(pUser, std::move(function));
    }

    // False when that user has one already.
    bool Add(const void* pUser, Function function)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (Find(pUser) != m_entries.end())
            return false;
        m_entries.emplace_back(pUser, std::move(function));
        return true;
    }

    // False when that user had none; the barrier holds all the same.
    bool Remove(const void* pUser)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        const auto found = Find(pUser);
        const bool bFound = found != m_entries.end();
        if (bFound)
            m_entries.erase(found);
        m_callEnded.wait(lock, [this, pUser] { return !RunsElsewhere(pUser); });
        return bFound;
    }

    // The user of the first callback, or null.
    const void* User() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_entries.empty() ? nullptr : m_entries.front().first;
    }

    // Calls each in turn, but for those that were removed before their turn came.
    void Call(Args... args)
    {
        for (const void* pUser : Users()) {
            const Function function = Enter(pUser);
            if (!function)
                continue;
            function(args...);
            Leave(pUser);
        }
    }

private:
    using Entry = std::pair<const void*, Function>;
    using RunningCall = std::pair<const void*, std::thread::id>;

    typename std::vector<Entry>::iterator Find(const void* pUser)
    {
        return std::find_if(m_entries.begin(), m_entries.end(),
                            [pUser](const Entry& entry) { return entry.first == pUser; });
    }

    bool RunsElsewhere(const void* pUser) const
    {
        return std::any_of(m_running.begin(), m_running.end(), [pUser](const RunningCall& call) {
            return call.first == pUser && call.second != std::this_thread::get_id();
        });
    }

    std::vector<const void*> Users() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        std::vector<const void*> users;
        for (const Entry& entry : m_entries)
            users.push_back(entry.first);
        return users;
    }

    Function Enter(const void* pUser)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = Find(pUser);
        if (found == m_entries.end())
            return Function();
        m_running.emplace_back(pUser, std::this_thread::get_id());
        return found->second;
    }

    void Leave(const void* pUser)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_running.erase(std::find(m_running.begin(), m_running.end(), RunningCall(pUser, std::this_thread::get_id())));
        m_callEnded.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_callEnded;
    std::vector<Entry> m_entries;
    std::vector<RunningCall> m_running;
};

} // namespace KXHost
