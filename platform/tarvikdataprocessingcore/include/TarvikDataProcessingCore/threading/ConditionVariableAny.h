// A condition variable for any recursive lockable: signals and their connections
// wait on it until the calls of a slot have ended.
//
// Thread-safe. notifyAll() wakes every thread that waits at that moment; a woken
// thread may also wake for no reason, so a waiter repeats its wait until its
// condition holds.
#pragma once

#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>

#include <atomic>
#include <condition_variable>

namespace Tarvik::DataProcessing::Threading
{

class UniqueLock;

class TDPC_API ConditionVariableAny
{
public:
    ConditionVariableAny();
    ~ConditionVariableAny();
    ConditionVariableAny(const ConditionVariableAny&) = delete;
    ConditionVariableAny& operator=(const ConditionVariableAny&) = delete;

    void notifyAll();
    // Releases `lockable` once, sleeps until notified and takes it again, as one
    // step for anyone who holds `lockable`. The caller holds it exactly once:
    // a level held beyond that stays held through the sleep.
    void waitInternal(IRecursiveLockable& lockable);

    // Waits on the lockable that `lock` owns; raises GenICam::InvalidArgumentException
    // if it owns none.
    void wait(UniqueLock& lock);

private:
    std::condition_variable_any m_condition;
    // Threads inside waitInternal: a notification that finds none is skipped.
    // Counted while the waiter holds its lockable, so that a notifier who
    // changed the condition under that lockable cannot miss it.
    std::atomic<int> m_waiters{0};
};

} // namespace Tarvik::DataProcessing::Threading

#include <tarvikdataprocessingcore/threading/conditionvariable_impl.h>
