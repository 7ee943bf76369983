#pragma once

#include "KXSdkGlobal.h"

namespace ktl {

// A non-recursive mutex of the host; works with std::lock_guard and std::unique_lock.
//
// Thread: any. Ownership: a value member of its owner; it must not be locked when destroyed.
class KX_HOST_EXPORT TMutex
{
public:
    TMutex();
    ~TMutex();
    TMutex(const TMutex&) = delete;
    TMutex& operator=(const TMutex&) = delete;

    void lock();
    void unlock();

private:
    void* m_pNative; // the host's own mutex, so that its type stays out of the contract
};

} // namespace ktl
