// Template half of ConditionVariableAny: the wait on a UniqueLock.
//
// A UniqueLock shows only whether it owns its lockable, so the wait releases
// and retakes the lockable through the UniqueLock itself. Its owned flag is
// clear only while its thread sleeps inside the wait, where nobody can look at
// it, since a UniqueLock belongs to one thread.
#pragma once

#include <TarvikDataProcessingCore/threading/ConditionVariableAny.h>
#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>

#include <GCBase/GCException.h>

namespace Tarvik::DataProcessing::Threading
{

namespace Detail
{

// Presents the lockable of a UniqueLock that owns it.
class UniqueLockRelay final : public IRecursiveLockable
{
public:
    explicit UniqueLockRelay(UniqueLock& lock) noexcept
        : m_lock(lock)
    {
    }
    void lock() override { m_lock.lock(); }
    void unlock() override { m_lock.unlock(); }

private:
    UniqueLock& m_lock;
};

} // namespace Detail

inline void ConditionVariableAny::wait(UniqueLock& lock)
{
    // A UniqueLock owns a lockable only if it has one.
    if (!lock.ownsLock())
        throw INVALID_ARGUMENT_EXCEPTION("Passed unique lock does not own a lockable.");
    Detail::UniqueLockRelay relay(lock);
    waitInternal(relay);
}

} // namespace Tarvik::DataProcessing::Threading
