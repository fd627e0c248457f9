// UniqueLock: holds a recursive lockable for one operation on one thread, and
// refuses to lock or unlock twice, although the lockable itself would allow it.
// ScopedLock: the plain guard of parameter accessors, with no state and no checks.
#pragma once

#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>

#include <GCBase/GCException.h>

namespace Tarvik::DataProcessing::Threading
{

class ConditionVariableAny;

class UniqueLock
{
public:
    // Holds no lockable: lock() and unlock() raise, the destructor does nothing.
    UniqueLock() noexcept
        : m_lockable(nullptr)
    {
    }
    // Locks `lockable` at once; a null lockable raises on that first lock().
    explicit UniqueLock(IRecursiveLockable* lockable)
        : m_lockable(lockable)
    {
        lock();
    }

    ~UniqueLock()
    {
        if (m_lockable && m_owned)
        {
            m_lockable->unlock();
            m_owned = false;
        }
        m_lockable = nullptr;
    }

    UniqueLock(const UniqueLock&) = delete;
    UniqueLock& operator=(const UniqueLock&) = delete;

    void lock()
    {
        if (!m_lockable)
            throw RUNTIME_EXCEPTION("No lockable is associated with this unique lock.");
        if (m_owned)
            throw RUNTIME_EXCEPTION("Lockable is already owned by this unique lock.");
        m_lockable->lock();
        m_owned = true;
    }

    void unlock()
    {
        if (!m_lockable)
            throw RUNTIME_EXCEPTION("No lockable is associated with this unique lock.");
        if (!m_owned)
            throw RUNTIME_EXCEPTION("Lockable is not owned by this unique lock.");
        m_lockable->unlock();
        m_owned = false;
    }

    bool ownsLock() const noexcept { return m_owned; }

private:
    // Waits on the lockable without letting go of it in the eyes of the owner.
    friend class ConditionVariableAny;

    IRecursiveLockable* m_lockable;
    bool m_owned = false;
};

class ScopedLock
{
public:
    explicit ScopedLock(IRecursiveLockable& lockable)
        : m_lockable(lockable)
    {
        m_lockable.lock();
    }
    ~ScopedLock() { m_lockable.unlock(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    IRecursiveLockable& m_lockable;
};

} // namespace Tarvik::DataProcessing::Threading
