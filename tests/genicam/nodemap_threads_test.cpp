// The map's lock, recursive for one thread and closed to the others, and one
// map used from several threads: every access takes the lock, so concurrent
// writes of a register-backed feature never tear and a client that holds the
// lock keeps everyone else out.
#include "genapi_test_support.h"

#include <atomic>
#include <thread>

using namespace GenApi;

namespace
{

using NodeMapThreads = GenApiTest::CMapTest;

TEST_F(NodeMapThreads, ConcurrentWritesAndReadsNeverTear)
{
    Load(GenApiTest::ReadDocument("signed_integer.xml"));
    port.splitWrites = true;
    port.Poke<int64_t>(0x8, -1000000);
    port.Poke<int64_t>(0x10, 1000000);
    port.Poke<int64_t>(0x18, 1);
    CIntegerPtr offset = ref._GetNode("Offset");

    std::atomic<int> callbacks{0};
    Register(offset->GetNode(), [&](INode*) { ++callbacks; });

    constexpr int rounds = 2000;
    std::atomic<bool> torn{false};
    std::thread writer(
        [&]
        {
            for (int i = 0; i < rounds; ++i)
                offset->SetValue(i % 2 == 0 ? -1 : 1); // all bits flip between the two
        });
    std::thread reader(
        [&]
        {
            for (int i = 0; i < rounds; ++i)
            {
                const int64_t value = offset->GetValue();
                if (value != -1 && value != 1 && value != 0)
                    torn = true;
            }
        });
    writer.join();
    reader.join();
    EXPECT_FALSE(torn);
    EXPECT_EQ(callbacks, rounds);
}

TEST(CLock, IsRecursiveAndExcludesOtherThreads)
{
    CLock lock;
    lock.Lock();
    EXPECT_TRUE(lock.TryLock());
    EXPECT_TRUE(GenApiTest::IsLockedElsewhere(lock));
    lock.Unlock();
    EXPECT_TRUE(GenApiTest::IsLockedElsewhere(lock)) << "still held once";
    lock.Unlock();
    EXPECT_FALSE(GenApiTest::IsLockedElsewhere(lock));
}

TEST_F(NodeMapThreads, ClientHoldingTheLockKeepsOtherThreadsOut)
{
    Load(GenApiTest::ReadDocument("signed_integer.xml"));
    CIntegerPtr width = ref._GetNode("Width");

    std::atomic<bool> written{false};
    lock.Lock();
    std::thread other(
        [&]
        {
            width->SetValue(32);
            written = true;
        });
    // The other thread cannot finish while we hold the lock; we still may use the map.
    EXPECT_EQ(width->GetValue(), 640);
    EXPECT_FALSE(written);
    lock.Unlock();
    other.join();
    EXPECT_TRUE(written);
    EXPECT_EQ(width->GetValue(), 32);
}

} // namespace
