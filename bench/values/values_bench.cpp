// The cost of handing values on: Variant copies, typed reads and clones, each
// beside the standard library doing the nearest equivalent. The counter
// "allocs" is the number of heap allocations per iteration.
#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

// Every allocation of the process goes through these two, which count it; GCC
// cannot see that they pair up and would warn about malloc against delete.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

namespace
{
std::atomic<long> allocationCount{0};
}

void* operator new(size_t size)
{
    allocationCount.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept
{
    std::free(p);
}
void operator delete(void* p, size_t) noexcept
{
    std::free(p);
}

using namespace Tarvik::DataProcessing;

namespace
{

void reportAllocations(benchmark::State& state, long before)
{
    state.counters["allocs"] =
        static_cast<double>(allocationCount.load() - before) / static_cast<double>(state.iterations());
}

Utils::Variant imageVariant()
{
    Utils::Variant variant;
    variant.setData(Utils::COWPtr<Core::IImage>(new Core::Image(
        Tarvik::PixelType_Mono8, 1920, 1200, 0, std::make_shared<Core::AlignedBufferProvider>(), nullptr)));
    return variant;
}

void copyVariant(benchmark::State& state)
{
    const Utils::Variant source = imageVariant();
    const long before = allocationCount.load();
    for (auto _ : state)
    {
        Utils::Variant copy(source);
        benchmark::DoNotOptimize(copy);
    }
    reportAllocations(state, before);
}

void copySharedPtr(benchmark::State& state)
{
    const std::shared_ptr<Core::IImage> source = std::make_shared<Core::Image>(
        Tarvik::PixelType_Mono8, 1920, 1200, 0, std::make_shared<Core::AlignedBufferProvider>(), nullptr);
    const long before = allocationCount.load();
    for (auto _ : state)
    {
        std::shared_ptr<Core::IImage> copy(source);
        benchmark::DoNotOptimize(copy);
    }
    reportAllocations(state, before);
}

void readImageFromVariant(benchmark::State& state)
{
    const Utils::Variant source = imageVariant();
    const long before = allocationCount.load();
    for (auto _ : state)
    {
        Utils::COWPtr<Core::IImage> image = source.get<Utils::COWPtr<Core::IImage>>(true);
        benchmark::DoNotOptimize(image);
    }
    reportAllocations(state, before);
}

void readImageFromSharedPtr(benchmark::State& state)
{
    const std::shared_ptr<Core::IValue> source = std::make_shared<Core::Image>(
        Tarvik::PixelType_Mono8, 1920, 1200, 0, std::make_shared<Core::AlignedBufferProvider>(), nullptr);
    const long before = allocationCount.load();
    for (auto _ : state)
    {
        std::shared_ptr<Core::IImage> image = std::dynamic_pointer_cast<Core::IImage>(source);
        benchmark::DoNotOptimize(image);
    }
    reportAllocations(state, before);
}

void cloneSmallValue(benchmark::State& state)
{
    const Utils::COWPtr<Core::IInteger> source(new Core::Integer(42, nullptr));
    for (auto _ : state)
    {
        Utils::COWPtr<Core::IInteger> handle(source);
        handle->setValue(43);
        benchmark::DoNotOptimize(handle);
    }
}

void newSmallValue(benchmark::State& state)
{
    const Core::Integer source(42, nullptr);
    for (auto _ : state)
    {
        std::unique_ptr<Core::Integer> copy(
            new Core::Integer(source, std::make_shared<Threading::RecursiveMutex>()));
        copy->setValue(43);
        benchmark::DoNotOptimize(copy);
    }
}

} // namespace

BENCHMARK(copyVariant)->Name("Variant/Copy/tessal");
BENCHMARK(copySharedPtr)->Name("Variant/Copy/shared_ptr");
BENCHMARK(readImageFromVariant)->Name("Variant/ReadCOWPtrIImage/tessal");
BENCHMARK(readImageFromSharedPtr)->Name("Variant/ReadCOWPtrIImage/shared_ptr");
BENCHMARK(cloneSmallValue)->Name("COWPtr/CloneInteger/tessal");
BENCHMARK(newSmallValue)->Name("COWPtr/CloneInteger/new");
