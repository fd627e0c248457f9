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

TEST(UniqueLock, LocksOnConstructionAndUnlocksOnceAtTheEnd)
{
    CountingLockable lockable;
    {
        UniqueLock guard(&lockable);
        EXPECT_EQ(lockable.depth, 1);
        EXPECT_TRUE(guard.ownsLock());
    }
    EXPECT_EQ(lockable.depth, 0);
}

TEST(UniqueLock, RefusesToLockOrUnlockTwice)
{
    CountingLockable lockable;
    UniqueLock guard(&lockable);
    EXPECT_EQ(runtimeFailure([&] { guard.lock(); }), "Lockable is already owned by this unique lock.");
    EXPECT_EQ(lockable.depth, 1);
    guard.unlock();
    EXPECT_EQ(runtimeFailure([&] { guard.unlock(); }), "Lockable is not owned by this unique lock.");
    EXPECT_EQ(lockable.depth, 0);
}

TEST(UniqueLock, UnlockedByHandIsNotUnlockedAgainAtTheEnd)
{
    CountingLockable lockable;
    {
        UniqueLock guard(&lockable);
        guard.unlock();
    }
    EXPECT_EQ(lockable.depth, 0);
}

TEST(UniqueLock, WithoutLockableRaisesAndItsEndDoesNothing)
{
    EXPECT_EQ(runtimeFailure([] { UniqueLock guard(nullptr); }),
              "No lockable is associated with this unique lock.");
    UniqueLock empty;
    EXPECT_EQ(runtimeFailure([&] { empty.lock(); }), "No lockable is associated with this unique lock.");
    EXPECT_EQ(runtimeFailure([&] { empty.unlock(); }), "No lockable is associated with this unique lock.");
}

TEST(ScopedLock, HoldsForItsScope)
{
    CountingLockable lockable;
    {
        ScopedLock guard(lockable);
        EXPECT_EQ(lockable.depth, 1);
    }
    EXPECT_EQ(lockable.depth, 0);
}
