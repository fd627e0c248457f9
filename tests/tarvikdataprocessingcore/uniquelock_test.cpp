// A unique lock holds its lockable for its scope, lets go exactly once, and
// refuses to lock or unlock twice or without a lockable.
#include "failure_text.h"
#include "observed_lockable.h"

#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>

#include <gtest/gtest.h>

using namespace Tarvik::DataProcessing::Threading;

TEST(UniqueLock, HoldsForItsScopeAndRefusesToLockOrUnlockTwice)
{
    ObservedLockable lockable;
    {
        UniqueLock guard(&lockable);
        EXPECT_TRUE(guard.ownsLock());
        EXPECT_EQ(failureOf([&] { guard.lock(); }),
                  "RuntimeException: Lockable is already owned by this unique lock.");
        EXPECT_EQ(lockable.depth(), 1);
    }
    EXPECT_EQ(lockable.depth(), 0);
    {
        UniqueLock guard(&lockable);
        guard.unlock();
        EXPECT_FALSE(guard.ownsLock());
        EXPECT_EQ(failureOf([&] { guard.unlock(); }),
                  "RuntimeException: Lockable is not owned by this unique lock.");
    }
    EXPECT_EQ(lockable.depth(), 0);
    {
        ScopedLock guard(lockable);
        EXPECT_EQ(lockable.depth(), 1);
    }
    EXPECT_EQ(lockable.depth(), 0);

    const std::string none = "RuntimeException: No lockable is associated with this unique lock.";
    EXPECT_EQ(failureOf([] { UniqueLock nothing(nullptr); }), none);
    UniqueLock empty;
    EXPECT_EQ(failureOf([&] { empty.lock(); }), none);
    EXPECT_EQ(failureOf([&] { empty.unlock(); }), none);
}
