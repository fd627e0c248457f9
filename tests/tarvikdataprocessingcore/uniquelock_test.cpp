#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>

#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>

#include <gtest/gtest.h>

using namespace Tarvik::DataProcessing::Threading;

namespace
{

class CountingLockable : public IRecursiveLockable
{
public:
    void lock() override { ++depth; }
    void unlock() override { --depth; }
    int depth = 0;
};

template <typename F>
std::string runtimeFailure(F&& action)
{
    try
    {
        action();
    }
    catch (const GenICam::RuntimeException& e)
    {
        return e.GetDescription();
    }
    return "no exception";
}

} // namespace

// Each guard holds the lock for its scope and lets go of it exactly once, also when
// unlocked by hand first.
TEST(UniqueLock, LocksForItsScopeAndUnlocksOnce)
{
    CountingLockable lockable;
    {
        UniqueLock guard(&lockable);
        EXPECT_EQ(lockable.depth, 1);
        EXPECT_TRUE(guard.ownsLock());
    }
    EXPECT_EQ(lockable.depth, 0);
    {
        UniqueLock guard(&lockable);
        guard.unlock();
        EXPECT_FALSE(guard.ownsLock());
    }
    EXPECT_EQ(lockable.depth, 0);
    {
        ScopedLock guard(lockable);
        EXPECT_EQ(lockable.depth, 1);
    }
    EXPECT_EQ(lockable.depth, 0);
}

TEST(UniqueLock, RefusesToLockOrUnlockTwiceOrWithoutLockable)
{
    CountingLockable lockable;
    UniqueLock guard(&lockable);
    EXPECT_EQ(runtimeFailure([&] { guard.lock(); }), "Lockable is already owned by this unique lock.");
    EXPECT_EQ(lockable.depth, 1);
    guard.unlock();
    EXPECT_EQ(runtimeFailure([&] { guard.unlock(); }), "Lockable is not owned by this unique lock.");
    EXPECT_EQ(lockable.depth, 0);

    const std::string none = "No lockable is associated with this unique lock.";
    EXPECT_EQ(runtimeFailure([] { UniqueLock nothing(nullptr); }), none);
    UniqueLock empty;
    EXPECT_EQ(runtimeFailure([&] { empty.lock(); }), none);
    EXPECT_EQ(runtimeFailure([&] { empty.unlock(); }), none);
}
