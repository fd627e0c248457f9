// ConditionVariableAny: the wait on a UniqueLock.
#include "failure_text.h"
#include "observed_lockable.h"

#include <TarvikDataProcessingCore/threading/ConditionVariableAny.h>

#include <gtest/gtest.h>

#include <thread>

using namespace Tarvik::DataProcessing;

TEST(ConditionVariableAny, WaitRefusesALockThatOwnsNothingWithoutTouchingIt)
{
    ObservedLockable lockable;
    Threading::ConditionVariableAny condition;
    Threading::UniqueLock unlocked(&lockable);
    unlocked.unlock();
    Threading::UniqueLock empty;
    for (Threading::UniqueLock* lock : {&unlocked, &empty})
    {
        const int locksBefore = lockable.lockCount();
        EXPECT_EQ(failureOf([&] { condition.wait(*lock); }),
                  "InvalidArgumentException: Passed unique lock does not own a lockable.");
        EXPECT_EQ(lockable.lockCount(), locksBefore);
        EXPECT_EQ(lockable.depth(), 0);
        EXPECT_FALSE(lock->ownsLock());
    }
}

// The notifier can take the lock only while the waiter sleeps in the wait.
TEST(ConditionVariableAny, WaitReleasesTheLockUntilNotifiedAndTakesItBack)
{
    ObservedLockable lockable;
    Threading::ConditionVariableAny condition;
    bool ready = false; // guarded by lockable
    Threading::UniqueLock lock(&lockable);
    std::thread notifier(
        [&]
        {
            Threading::ScopedLock guard(lockable);
            // The waiter sleeps in the wait; its lock still counts as owned.
            EXPECT_TRUE(lock.ownsLock());
            ready = true;
            condition.notifyAll();
        });
    while (!ready)
        condition.wait(lock);
    EXPECT_TRUE(lock.ownsLock());
    EXPECT_EQ(lockable.depth(), 1);
    lock.unlock();
    notifier.join();
    EXPECT_EQ(lockable.depth(), 0);
}
