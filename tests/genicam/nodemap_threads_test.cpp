// One map used from several threads: every access takes the map's lock, so
// concurrent writes of a register-backed feature never tear and a client that
// holds the lock keeps everyone else out.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace GenApi;

namespace
{

// A port whose 8-byte writes arrive in two halves, so that an unguarded
// concurrent reader would see a torn value.
class CSlowPort final : public GenApiTest::CMemoryPort
{
public:
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override
    {
        const uint8_t* bytes = static_cast<const uint8_t*>(pBuffer);
        GenApiTest::CMemoryPort::Write(bytes, Address, Length / 2);
        std::this_thread::yield();
        GenApiTest::CMemoryPort::Write(bytes + Length / 2, Address + Length / 2, Length - Length / 2);
    }
};

TEST(NodeMapThreads, ConcurrentWritesAndReadsNeverTear)
{
    CLock lock;
    CNodeMapRef ref(GenApiTest::CreateMap(GenApiTest::ReadDocument("signed_integer.xml"), &lock));
    CSlowPort port;
    port.Poke<int64_t>(0x8, -1000000);
    port.Poke<int64_t>(0x10, 1000000);
    port.Poke<int64_t>(0x18, 1);
    ref._Connect(&port);
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

TEST(NodeMapThreads, ClientHoldingTheLockKeepsOtherThreadsOut)
{
    CLock lock;
    CNodeMapRef ref(GenApiTest::CreateMap(GenApiTest::ReadDocument("signed_integer.xml"), &lock));
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
