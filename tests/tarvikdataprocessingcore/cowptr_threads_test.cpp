#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace Tarvik::DataProcessing;

// Many threads copy and drop handles on one object: the count must come back
// to exactly one, and the object must survive until the last handle is gone.
TEST(CowPtrThreads, UseCountStaysExactUnderContention)
{
    Utils::COWPtr<Core::Integer> origin(new Core::Integer(11, nullptr));
    constexpr int threadCount = 8;
    constexpr int rounds = 20000;
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t)
        threads.emplace_back(
            [&origin]
            {
                for (int i = 0; i < rounds; ++i)
                {
                    Utils::COWPtr<Core::Integer> copy(origin);
                    Utils::COWPtr<Core::IInteger> seen(copy);
                    ASSERT_EQ(std::as_const(seen)->getValue(), 11);
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(origin.getUseCount(), 1);
}

// Two threads write through two handles on one object: each gets its own clone
// and neither sees the other's write.
TEST(CowPtrThreads, ConcurrentWritersEachCloneTheirOwn)
{
    Utils::COWPtr<Core::Integer> shared(new Core::Integer(0, nullptr));
    Utils::COWPtr<Core::Integer> a = shared;
    Utils::COWPtr<Core::Integer> b = shared;
    std::thread first([&] { a->setValue(1); });
    std::thread second([&] { b->setValue(2); });
    first.join();
    second.join();
    EXPECT_EQ(std::as_const(shared)->getValue(), 0);
    EXPECT_EQ(std::as_const(a)->getValue(), 1);
    EXPECT_EQ(std::as_const(b)->getValue(), 2);
}
