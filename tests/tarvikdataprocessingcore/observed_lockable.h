// A recursive lock that tells how often it was taken and how deeply it is held,
// also to other threads.
#pragma once

#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>

#include <atomic>
#include <mutex>

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
