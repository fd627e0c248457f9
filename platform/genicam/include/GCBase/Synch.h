// GenApi::CLock: the recursive lock of a node map. One thread may lock it
// again while it holds it, and must unlock it as often.
#pragma once

#include <GCBase/GCBaseExport.h>

#include <mutex>

namespace GenApi
{

class GCBASE_API CLock
{
public:
    CLock() = default;
    ~CLock() = default;
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    void Lock() { m_mutex.lock(); }
    bool TryLock() { return m_mutex.try_lock(); }
    void Unlock() { m_mutex.unlock(); }

private:
    std::recursive_mutex m_mutex;
};

// Holds a CLock for one scope.
class AutoLock
{
public:
    explicit AutoLock(CLock& lock)
        : m_lock(lock)
    {
        m_lock.Lock();
    }
    ~AutoLock() { m_lock.Unlock(); }
    AutoLock(const AutoLock&) = delete;
    AutoLock& operator=(const AutoLock&) = delete;

private:
    CLock& m_lock;
};

} // namespace GenApi
