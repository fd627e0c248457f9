// The Decoupler through the package's exports, with a recording job queue as the
// graph. Real threads run here, so verdicts never hang on timing: a worker that
// must not tick is held by an "Fps" that gives no tick at all, and one that must
// tick is waited for with generous bounds. These tests also run under the thread
// sanitizer.
#include "decouplertick.h"
#include "log_capture.h"
#include "node_test_support.h"

#include <TarvikDataProcessingCore/core/GraphUpdate.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/RecordingJobQueue.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>
#include <stdexcept>
#include <thread>

using namespace Tarvik::DataProcessing;
using namespace std::chrono_literals;
using NodeTestSupport::tessalNodeMap;

namespace
{

// Gives no tick at all: nothing leaves the slot while it holds.
constexpr double noTickFps = 1e-300;
constexpr double fastFps = 1000.0;
constexpr std::chrono::milliseconds generous = 10s;

class DecouplerTest : public ::testing::Test
{
protected:
    struct Sent
    {
        std::shared_ptr<Core::IGraphUpdate> update;
        Utils::Variant value;
    };

    void load(std::optional<bool> throttleMode, std::optional<double> fps)
    {
        auto settings = std::make_shared<Core::MemorySettings>();
        if (throttleMode)
            settings->setBool("ThrottleMode", *throttleMode);
        if (fps)
            settings->setDouble("Fps", *fps);
        node->load(settings);
    }

    // Runs the node on a fresh update with the integer `number`; run() itself outputs nothing.
    Sent send(int64_t number)
    {
        Sent sent{std::make_shared<Core::GraphUpdate>(std::vector<std::shared_ptr<Core::IGraphUpdate>>{}),
                  Utils::Variant{Core::Integer(number, nullptr)}};
        const Core::UpdateOutputs outputs = node->run(sent.update, {{"GenericInput", sent.value}});
        EXPECT_EQ(outputs.size(), 1u);
        EXPECT_TRUE(outputs.count(sent.update) && outputs.at(sent.update).empty());
        return sent;
    }

    // The job is `sent`, unchanged, on a new update after sent's, from `thread`.
    static void expectDelivered(const Core::RecordingJobQueue::Job& job, const Sent& sent,
                                std::thread::id thread)
    {
        ASSERT_EQ(job.values.size(), 1u);
        EXPECT_EQ(job.values.at("GenericOutput").get<Core::IInteger>(true),
                  sent.value.get<Core::IInteger>(true));
        EXPECT_EQ(job.update->getParents(), std::vector<std::shared_ptr<Core::IGraphUpdate>>{sent.update});
        EXPECT_NE(job.update, sent.update);
        EXPECT_EQ(job.thread == std::this_thread::get_id(), thread == std::this_thread::get_id());
    }

    const std::thread::id here = std::this_thread::get_id();
    const std::thread::id worker{}; // Any thread but this one.

    std::shared_ptr<Core::RecordingJobQueue> jobs = std::make_shared<Core::RecordingJobQueue>();
    PackageLoader package{builtPackagePath()};
    std::shared_ptr<Core::INode> node =
        package.createNode("Decoupler", std::make_shared<Core::ResourcePool>(nullptr, jobs, jobs));
};

} // namespace

TEST(DecouplerTick, PeriodIsTheTruncatedMillisecondsOfOneFrame)
{
    using Period = std::optional<std::chrono::milliseconds>;
    const struct
    {
        double fps;
        Period period;
    } cases[] = {
        {25.0, 40ms},
        {3.0, 333ms},
        {1000.0, 1ms},
        {1000.5, 0ms}, // above 1000: no wait
        {std::numeric_limits<double>::infinity(), 0ms},
        {0.0, 0ms},
        {-0.0, 0ms},
        {-25.0, 0ms},
        {std::nan(""), 0ms},
        {1.1e-10, std::chrono::milliseconds(9090909090909)}, // still a 64-bit count of nanoseconds
        {1e-10, std::nullopt},                               // no longer: no tick
        {noTickFps, std::nullopt},
        {std::numeric_limits<double>::denorm_min(), std::nullopt}, // 1000 / fps overflows to infinity
    };
    for (const auto& c : cases)
        EXPECT_EQ(TarvikViewerTessalPackage::Detail::tickPeriod(c.fps), c.period) << c.fps;
}

// A NaN Fps differs even from a NaN, so each load of one notifies.
TEST_F(DecouplerTest, EachLoadOfANaNFpsNotifies)
{
    GenApi::INodeMap* const nodeMap = tessalNodeMap(*node);
    ASSERT_NE(nodeMap, nullptr);
    int callbacks = 0;
    GenApi::Register(nodeMap->GetNode("Fps"), [&](GenApi::INode*) { ++callbacks; });
    for (int loads = 1; loads <= 2; ++loads)
    {
        load(std::nullopt, std::nan(""));
        EXPECT_EQ(callbacks, loads);
    }
}

TEST_F(DecouplerTest, FirstValueLeavesInsideRunThenTheNewestLeavesAtTheTick)
{
    load(true, noTickFps);
    node->start({});
    const Sent first = send(1);
    ASSERT_EQ(jobs->jobCount(), 1u);
    const Sent dropped = send(2);
    const Sent newest = send(3);
    EXPECT_EQ(jobs->jobCount(), 1u) << "without a tick, values only wait";

    load(std::nullopt, fastFps);
    ASSERT_TRUE(jobs->waitForJobs(2, generous));
    const auto delivered = jobs->jobs();
    expectDelivered(delivered[0], first, here);
    expectDelivered(delivered[1], newest, worker);
    EXPECT_EQ(jobs->spaceWaitCount(), 1u) << "only the worker waits for space";

    // A tick that finds nothing waiting lets the next value out at once, inside run().
    bool leftInsideRun = false;
    for (const auto end = std::chrono::steady_clock::now() + generous;
         !leftInsideRun && std::chrono::steady_clock::now() < end; std::this_thread::sleep_for(5ms))
    {
        const size_t before = jobs->jobCount();
        send(4);
        const auto after = jobs->jobs();
        leftInsideRun = after.size() > before && after.back().thread == here;
    }
    EXPECT_TRUE(leftInsideRun);
    node->stop();
    for (const auto& job : jobs->jobs())
        EXPECT_NE(job.values.at("GenericOutput").get<Core::IInteger>(true)->getValue(), 2);
}

TEST_F(DecouplerTest, WithoutThrottlingEachValueLeavesInsideRunAndAWaitingValueStays)
{
    load(true, noTickFps);
    node->start({});
    send(1);
    const Sent waiting = send(2);
    jobs->reportNoSpace(true);
    load(false, fastFps);
    for (int64_t number : {3, 4})
    {
        const Sent sent = send(number);
        ASSERT_EQ(jobs->jobCount(), static_cast<size_t>(number - 1));
        expectDelivered(jobs->jobs().back(), sent, here);
    }
    // Ticks without throttling leave the slot alone; give them time to do harm.
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(jobs->spaceWaitCount(), 0u);
    EXPECT_EQ(jobs->jobCount(), 3u);

    jobs->reportNoSpace(false);
    load(true, std::nullopt);
    ASSERT_TRUE(jobs->waitForJobs(4, generous));
    expectDelivered(jobs->jobs()[3], waiting, worker);
}

TEST_F(DecouplerTest, StoppingDropsTheWaitingValueAndStartingSendsNothingByItself)
{
    load(true, noTickFps);
    node->start({});
    send(1);
    send(2);
    node->stop();
    load(std::nullopt, fastFps);
    node->start({});
    // A value left in the slot would leave at the first tick, within a millisecond or so.
    EXPECT_FALSE(jobs->waitForJobs(2, 100ms));
    const Sent next = send(3);
    ASSERT_EQ(jobs->jobCount(), 2u);
    expectDelivered(jobs->jobs()[1], next, here);
}

TEST_F(DecouplerTest, AFailedDeliveryLogsOneLineAndTheNextValueGoesOn)
{
    const struct
    {
        void (*thrower)();
        std::string line;
    } failures[] = {
        {[] { throw GenICam::RuntimeException("queue closed", "graph.cpp", 7); },
         ": Exception caught while sending output data. Message: queue closed"},
        {[] { throw std::length_error("too many jobs"); },
         ": Exception caught while sending output data. Message: too many jobs"},
        {[] { throw 42; }, ": Unknown exception caught while sending output data."},
    };
    load(false, std::nullopt);
    node->start({});
    char address[32];
    std::snprintf(address, sizeof address, "%p", node->getRawPointer());
    for (const auto& failure : failures)
    {
        LogCapture log;
        jobs->failNextJob(failure.thrower);
        const size_t before = jobs->jobCount();
        send(1);
        const Sent next = send(2);
        ASSERT_EQ(jobs->jobCount(), before + 1);
        expectDelivered(jobs->jobs().back(), next, here);

        const auto entries = log.entries();
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(entries[0].severity, Utils::Severitiy_Warning);
        EXPECT_EQ(entries[0].category, "tarvik.dataprocessing.tessal.Decoupler");
        EXPECT_EQ(entries[0].text, "Decoupler " + std::string(address) + failure.line);
    }

    // A refused update drops the value without a word.
    LogCapture log;
    jobs->refuseUpdates(true);
    send(3);
    EXPECT_EQ(jobs->jobCount(), 3u);
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(DecouplerTest, StopsPromptlyWhateverFpsSays)
{
    for (double fps : {noTickFps, 0.0, -1.0, std::nan(""), 5000.0})
    {
        load(true, fps);
        node->start({});
        send(1);
        send(2);
        const auto begin = std::chrono::steady_clock::now();
        node->stop();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, generous) << fps;
    }
}

// Started and stopped a hundred times while a client writes the parameters through
// the node map and another thread runs the node: no race, no deadlock, and nothing
// delivered by the worker once onStopping() has returned.
TEST_F(DecouplerTest, StartsAndStopsWhileParametersChangeAndValuesArrive)
{
    GenApi::INodeMap* const nodeMap = tessalNodeMap(*node);
    ASSERT_NE(nodeMap, nullptr);
    std::atomic<bool> done{false};
    std::atomic<int> runs{0};
    std::thread client(
        [&]
        {
            GenApi::CFloatPtr fps = nodeMap->GetNode("Fps");
            GenApi::CBooleanPtr throttleMode = nodeMap->GetNode("ThrottleMode");
            // Rates that keep a stop short: no wait, a short one, or no tick at all.
            const double rates[] = {200.0, fastFps, 5000.0, 0.0, noTickFps};
            for (int i = 0; !done; ++i)
            {
                fps->SetValue(rates[i % 5]);
                throttleMode->SetValue(i % 3 != 0);
                if (i % 7 == 0)
                    load(std::nullopt, std::nan(""));
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
    for (int cycle = 0; cycle < 100; ++cycle)
    {
        if (!idle.empty())
            idle.back().second = jobs->jobCount();
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
