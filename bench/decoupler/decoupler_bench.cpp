// The Decoupler through the package's exports:
//   Run/<throttle_on|throttle_off>/<prompt|slow>/decoupler: one run() while the
//     worker ticks at 25 fps; "slow" is a downstream that is always full, whose
//     wait for space lasts 5 ms. run() never waits for space, so each pair of
//     prompt and slow must cost the same.
//   Run/gate: Gate's run(), which hands the same value on without a thread or a
//     slot: the peer of the four above.
//   Rate/<fps>/decoupler: values arrive at 500 a second for three seconds; the
//     counters show the set rate beside the rate delivered (and the rate of
//     arrival). The period is 1000 / fps milliseconds truncated, plus the time
//     of one delivery, so 60 fps gives a period of 16 ms.
#include "built_package.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/GraphUpdate.h>
#include <TarvikDataProcessingCore/core/IJobQueue.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace Tarvik::DataProcessing;
using namespace std::chrono_literals;

namespace
{

// A downstream that counts what it gets; its wait for space lasts `spaceWait`.
class Downstream final : public Core::IUpdateFactory, public Core::IJobQueue
{
public:
    explicit Downstream(std::chrono::microseconds spaceWait)
        : m_spaceWait(spaceWait)
    {
    }

    std::shared_ptr<Core::IGraphUpdate>
    createUpdate(Core::INode*, const std::vector<std::shared_ptr<Core::IGraphUpdate>>& parents,
                 const std::shared_ptr<void>&) override
    {
        return std::make_shared<Core::GraphUpdate>(parents);
    }
    bool createJob(Core::INode&, const std::shared_ptr<Core::IGraphUpdate>&, const Core::ValueMap&,
                   const std::function<void()>&) override
    {
        ++delivered;
        return true;
    }
    bool waitUntilSpaceAvailable(Core::INode&) override
    {
        std::this_thread::sleep_for(m_spaceWait);
        return true;
    }

    std::atomic<int64_t> delivered{0};

private:
    std::chrono::microseconds m_spaceWait;
};

PackageLoader& package()
{
    static PackageLoader loaded{builtPackagePath()};
    return loaded;
}

std::shared_ptr<Core::INode> decoupler(const std::shared_ptr<Downstream>& downstream, bool throttleMode,
                                       double fps)
{
    auto node = package().createNode("Decoupler",
                                     std::make_shared<Core::ResourcePool>(nullptr, downstream, downstream));
    auto settings = std::make_shared<Core::MemorySettings>();
    settings->setBool("ThrottleMode", throttleMode);
    settings->setDouble("Fps", fps);
    node->load(settings);
    return node;
}

const Core::ValueMap& inputs()
{
    static const Core::ValueMap values{{"GenericInput", Utils::Variant{Core::Integer(7, nullptr)}}};
    return values;
}

void runDecoupler(benchmark::State& state, bool throttleMode, std::chrono::microseconds spaceWait)
{
    const auto downstream = std::make_shared<Downstream>(spaceWait);
    const auto node = decoupler(downstream, throttleMode, 25.0);
    node->start({});
    const std::shared_ptr<Core::IGraphUpdate> update =
        std::make_shared<Core::GraphUpdate>(std::vector<std::shared_ptr<Core::IGraphUpdate>>{});
    for (auto _ : state)
        benchmark::DoNotOptimize(node->run(update, inputs()));
    node->stop();
    state.counters["delivered"] = static_cast<double>(downstream->delivered);
}

void runGate(benchmark::State& state)
{
    const auto node = package().createNode("Gate");
    auto settings = std::make_shared<Core::MemorySettings>();
    settings->setBool("Enable", true);
    node->load(settings);
    const std::shared_ptr<Core::IGraphUpdate> update =
        std::make_shared<Core::GraphUpdate>(std::vector<std::shared_ptr<Core::IGraphUpdate>>{});
    for (auto _ : state)
        benchmark::DoNotOptimize(node->run(update, inputs()));
}

void deliveredRate(benchmark::State& state, double fps)
{
    constexpr auto arrivalPeriod = 2ms;
    constexpr auto duration = 3s;
    for (auto _ : state)
    {
        const auto downstream = std::make_shared<Downstream>(0us);
        const auto node = decoupler(downstream, true, fps);
        int64_t arrived = 0;
        node->start({});
        const auto begin = std::chrono::steady_clock::now();
        for (auto next = begin; next < begin + duration; next += arrivalPeriod, ++arrived)
        {
            std::this_thread::sleep_until(next);
            node->run(std::make_shared<Core::GraphUpdate>(std::vector<std::shared_ptr<Core::IGraphUpdate>>{}),
                      inputs());
        }
        node->stop();
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        state.counters["set_fps"] = fps;
        state.counters["delivered_fps"] = static_cast<double>(downstream->delivered) / seconds;
        state.counters["arrived_fps"] = static_cast<double>(arrived) / seconds;
    }
}

} // namespace

BENCHMARK_CAPTURE(runDecoupler, on_prompt, true, 0us)->Name("Run/throttle_on/prompt/decoupler");
BENCHMARK_CAPTURE(runDecoupler, on_slow, true, 5000us)->Name("Run/throttle_on/slow/decoupler");
BENCHMARK_CAPTURE(runDecoupler, off_prompt, false, 0us)->Name("Run/throttle_off/prompt/decoupler");
BENCHMARK_CAPTURE(runDecoupler, off_slow, false, 5000us)->Name("Run/throttle_off/slow/decoupler");
BENCHMARK(runGate)->Name("Run/gate");
BENCHMARK_CAPTURE(deliveredRate, fps25, 25.0)->Name("Rate/25/decoupler")->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(deliveredRate, fps60, 60.0)->Name("Rate/60/decoupler")->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(deliveredRate, fps200, 200.0)->Name("Rate/200/decoupler")->Iterations(1)->UseRealTime();
