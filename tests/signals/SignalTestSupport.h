// Tools of the signal tests: the log capture of the framework's tests, and a lock
// that can be watched from other threads.
#pragma once

#include "log_capture.h"

#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>

#include <atomic>
#include <mutex>

namespace SignalTesting
{

// A recursive lock that tells how often it was taken and how deeply it is held.
class ObservedLockable final : public Tarvik::DataProcessing::Threading::IRecursiveLockable
{
public:
    void lock() override
    {
        m_mutex.lock();
        ++m_depth;
        ++m_lockCount;
    }
    void unlock() override
    {
        --m_depth;
        m_mutex.unlock();
    }
    int depth() const { return m_depth.load(); }
    int lockCount() const { return m_lockCount.load(); }

private:
    std::recursive_mutex m_mutex;
    std::atomic<int> m_depth{0};
    std::atomic<int> m_lockCount{0};
};

} // namespace SignalTesting
