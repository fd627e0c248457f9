// Firing a signal with 0, 1 and 8 slots, beside a plain loop that calls the same
// slots as std::function: the price of the lock, the local list, the slot
// results and the combiner.
#include <tarvikdataprocessingcore/utils/signal_impl.h>

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace
{

using Tarvik::DataProcessing::Utils::Signal;

std::vector<std::function<void()>> makeSlots(int count, int& counter)
{
    return std::vector<std::function<void()>>(static_cast<size_t>(count),
                                              [&counter] { benchmark::DoNotOptimize(++counter); });
}

void fireSignal(benchmark::State& state, int slotCount)
{
    int counter = 0;
    Signal<void()> signal;
    for (std::function<void()>& slot : makeSlots(slotCount, counter))
        signal.connect(std::move(slot));
    for (auto _ : state)
        signal();
    state.SetItemsProcessed(state.iterations() * slotCount);
}

void callFunctions(benchmark::State& state, int slotCount)
{
    int counter = 0;
    const std::vector<std::function<void()>> slots = makeSlots(slotCount, counter);
    for (auto _ : state)
    {
        for (const std::function<void()>& slot : slots)
            slot();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * slotCount);
}

const bool registered = []
{
    for (const int slotCount : {0, 1, 8})
    {
        const std::string name = "Signal/Fire/" + std::to_string(slotCount);
        benchmark::RegisterBenchmark((name + "/tessal").c_str(), fireSignal, slotCount);
        benchmark::RegisterBenchmark((name + "/function").c_str(), callFunctions, slotCount);
    }
    return true;
}();

} // namespace
