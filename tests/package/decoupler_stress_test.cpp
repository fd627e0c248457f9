// The Decoupler started and stopped a hundred times while a client writes its
// parameters through the node map and another thread runs it. Under the thread
// sanitizer this shows no race and no deadlock; everywhere it shows that the
// worker delivers nothing once onStopping() has returned.
#include "node_test_support.h"

#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/RecordingJobQueue.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

using namespace Tarvik::DataProcessing;

TEST(DecouplerStress, StartsAndStopsWhileParametersChangeAndValuesArrive)
{
    constexpr int cycles = 100;
    const auto jobs = std::make_shared<Core::RecordingJobQueue>();
    PackageLoader package{builtPackagePath()};
    const std::shared_ptr<Core::INode> node =
        package.createNode("Decoupler", std::make_shared<Core::ResourcePool>(nullptr, jobs, jobs));
    GenApi::INodeMap* const nodeMap = NodeTestSupport::tessalNodeMap(*node);
    ASSERT_NE(nodeMap, nullptr);

    std::atomic<bool> done{false};
    std::atomic<int> runs{0};
    std::thread client(
        [&]
        {
            GenApi::CFloatPtr fps = nodeMap->GetNode("Fps");
            GenApi::CBooleanPtr throttleMode = nodeMap->GetNode("ThrottleMode");
            // Rates that keep a stop short: no wait, a short one, or no tick at all.
            const double rates[] = {200.0, 1000.0, 5000.0, 0.0, 1e-300};
            auto settings = std::make_shared<Core::MemorySettings>();
            settings->setDouble("Fps", std::nan(""));
            for (int i = 0; !done; ++i)
            {
                fps->SetValue(rates[i % 5]);
                throttleMode->SetValue(i % 3 != 0);
                if (i % 7 == 0)
                    node->load(settings);
                std::this_thread::yield();
            }
        });
    std::thread runner(
        [&]
        {
            const auto update = std::make_shared<NodeTestSupport::TestUpdate>();
            for (int64_t i = 0; !done; ++i)
            {
                node->run(update, {{"GenericInput", Utils::Variant{Core::Integer(i, nullptr)}}});
                ++runs;
                std::this_thread::sleep_for(std::chrono::microseconds(100));
            }
        });
    const std::thread::id runnerId = runner.get_id();

    // [stopped, started): job indexes recorded while no worker ran.
    std::vector<std::pair<size_t, size_t>> idle;
    for (int cycle = 0; cycle < cycles; ++cycle)
    {
        const size_t beforeStart = jobs->jobCount();
        if (!idle.empty())
            idle.back().second = beforeStart;
        node->start({});
        // Let a few values arrive while the worker runs.
        for (const int target = runs + 3; runs < target;)
            std::this_thread::yield();
        node->stop();
        idle.emplace_back(jobs->jobCount(), 0);
    }
    done = true;
    client.join();
    runner.join();
    idle.back().second = jobs->jobCount();

    const auto recorded = jobs->jobs();
    for (const auto& [stopped, started] : idle)
        for (size_t i = stopped; i < started; ++i)
            EXPECT_EQ(recorded[i].thread, runnerId) << "job " << i << " delivered by a stopped worker";
}
