#include "ktl/TMutex.h"

#include <mutex>

namespace ktl {

TMutex::TMutex()
    : m_pNative(new std::mutex)
{}

TMutex::~TMutex()
{
    delete static_cast<std::mutex*>(m_pNative);
}

void TMutex::lock()
{
    static_cast<std::mutex*>(m_pNative)->lock();
}

void TMutex::unlock()
{
    static_cast<std::mutex*>(m_pNative)->unlock();
}

} // namespace ktl
