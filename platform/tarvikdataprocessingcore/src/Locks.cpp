#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>
#include <TarvikDataProcessingCore/threading/RecursiveMutex.h>

namespace Tarvik::DataProcessing::Threading
{

IRecursiveLockable::~IRecursiveLockable() = default;

RecursiveMutex::RecursiveMutex() = default;
RecursiveMutex::~RecursiveMutex() = default;
void RecursiveMutex::lock()
{
    m_mutex.lock();
}
void RecursiveMutex::unlock()
{
    m_mutex.unlock();
}

RecursiveCLock::RecursiveCLock() = default;
RecursiveCLock::~RecursiveCLock() = default;
void RecursiveCLock::lock()
{
    m_lock.Lock();
}
void RecursiveCLock::unlock()
{
    m_lock.Unlock();
}
GenApi::CLock& RecursiveCLock::getLock()
{
    return m_lock;
}

} // namespace Tarvik::DataProcessing::Threading
