// Signal on one thread: order, lock, trackables, enabling, disconnecting from a
// slot, and exceptions of slots.
#include "SignalTestSupport.h"
#include "failure_text.h"

#include <tarvikdataprocessingcore/utils/signal_impl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Tarvik::DataProcessing;
using ::testing::ElementsAre;
using ::testing::MatchesRegex;

namespace
{

class Signal : public ::testing::Test
{
protected:
    std::shared_ptr<SignalTesting::ObservedLockable> lockable =
        std::make_shared<SignalTesting::ObservedLockable>();
    Utils::Signal<void()> signal{lockable};
    std::vector<std::string> calls;
    SignalTesting::LogCapture log;

    std::function<void()> record(const std::string& name)
    {
        return [this, name] { calls.push_back(name); };
    }
};

} // namespace

TEST_F(Signal, CallsSlotsInOrderOfConnectingOutsideItsLock)
{
    std::vector<int> depthsInSlots;
    auto a = signal.connect(record("a"));
    auto b = signal.connect([&] { depthsInSlots.push_back(lockable->depth()); });
    auto c = signal.connect(record("c"));
    signal();
    signal();
    EXPECT_THAT(calls, ElementsAre("a", "c", "a", "c"));
    EXPECT_THAT(depthsInSlots, ElementsAre(0, 0));
    EXPECT_EQ(lockable->depth(), 0);
    EXPECT_EQ(signal.getConnectionCount(), 3u);
    EXPECT_FALSE(signal.isEmpty());
}

TEST_F(Signal, RefusesAnEmptyFunctionAndNullTrackableAddingNothing)
{
    EXPECT_EQ(failureOf([&] { signal.connect(std::function<void()>()); }),
              "InvalidArgumentException: No valid function passed.");
    EXPECT_EQ(failureOf([&] { signal.connect(record("a"), {nullptr}); }),
              "BadAllocException: Invalid trackable object passed.");
    EXPECT_TRUE(signal.isEmpty());
    EXPECT_EQ(failureOf([] { Utils::Signal<void()>(std::shared_ptr<Threading::IRecursiveLockable>()); }),
              "InvalidArgumentException: No lockable passed.");
    signal(); // without connections: no effect
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(Signal, SkipsAndDropsConnectionsWhoseTrackableHasGone)
{
    auto tracked = std::make_shared<int>(1);
    auto disabledTracked = std::make_shared<int>(2);
    auto gone = signal.connect(record("gone"), {Utils::makeTrackable(tracked)});
    auto disabledGone = signal.connect(record("disabled"), {Utils::makeTrackable(disabledTracked)});
    auto kept = signal.connect(record("kept"));
    disabledGone->setEnabled(false, false);
    tracked.reset();
    disabledTracked.reset();

    EXPECT_TRUE(gone->isExpired());
    EXPECT_EQ(signal.getConnectionCount(), 3u); // counted until removed
    signal();
    EXPECT_THAT(calls, ElementsAre("kept"));
    EXPECT_EQ(signal.getConnectionCount(), 1u);
    EXPECT_FALSE(gone->isConnected());
    EXPECT_FALSE(disabledGone->isConnected());
    EXPECT_TRUE(kept->isConnected());

    // A new connection also sweeps out the expired ones.
    auto again = std::make_shared<int>(3);
    auto goneAgain = signal.connect(record("goneAgain"), {Utils::makeTrackable(again)});
    again.reset();
    signal.connect(record("new"));
    EXPECT_EQ(signal.getConnectionCount(), 2u);
    EXPECT_FALSE(goneAgain->isConnected());
}

TEST_F(Signal, KeepsTrackedObjectsAliveDuringTheCall)
{
    auto tracked = std::make_shared<int>(7);
    const std::weak_ptr<int> watch = tracked;
    bool aliveAfterOwnerLetGo = false;
    signal.connect(
        [&]
        {
            tracked.reset();
            aliveAfterOwnerLetGo = !watch.expired();
        },
        {Utils::makeTrackable(tracked)});
    signal();
    EXPECT_TRUE(aliveAfterOwnerLetGo);
    EXPECT_TRUE(watch.expired());
}

TEST_F(Signal, EnablingGoesThroughDisabledAndBack)
{
    auto connection = signal.connect(record("a"));
    EXPECT_TRUE(connection->isEnabled());
    connection->setEnabled(false, false);
    EXPECT_FALSE(connection->isEnabled());
    connection->setEnabled(false, false); // already disabled: returns at once
    signal();
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(connection->isConnected());
    connection->setEnabled(true, false);
    EXPECT_TRUE(connection->isEnabled());
    signal();
    EXPECT_THAT(calls, ElementsAre("a"));
}

TEST_F(Signal, ChangesDuringAFiringCountFromTheNextOne)
{
    std::shared_ptr<Utils::IConnection> second;
    std::shared_ptr<Utils::IConnection> added;
    auto first = signal.connect(
        [&]
        {
            calls.push_back("first");
            second->setEnabled(false, false);
            if (!added)
                added = signal.connect(record("added"));
        });
    second = signal.connect(record("second"));
    signal();
    EXPECT_THAT(calls, ElementsAre("first", "second"));
    calls.clear();
    signal();
    EXPECT_THAT(calls, ElementsAre("first", "added"));
}

// A slot ends its own connection with and without waiting; the others of the
// firing are still called, and its slot is not called again.
TEST_F(Signal, SlotDisconnectsItself)
{
    for (const bool wait : {false, true})
    {
        calls.clear();
        std::shared_ptr<Utils::IConnection> self;
        self = signal.connect(
            [&]
            {
                calls.push_back("self");
                self->disconnect(wait);
            });
        auto other = signal.connect(record("other"));
        signal();
        signal();
        EXPECT_THAT(calls, ElementsAre("self", "other", "other")) << "wait " << wait;
        EXPECT_FALSE(self->isConnected());
        other->disconnect(false);
        EXPECT_TRUE(signal.isEmpty());
    }
}

TEST_F(Signal, SlotDisablesItselfWithWaiting)
{
    std::shared_ptr<Utils::IConnection> self;
    self = signal.connect(
        [&]
        {
            calls.push_back("self");
            self->setEnabled(false, true);
        });
    signal();
    signal();
    EXPECT_THAT(calls, ElementsAre("self"));
    EXPECT_FALSE(self->isEnabled());
}

// The slot fires its signal again and ends its connection with waiting in the
// inner call: two calls of it run on this thread, and neither waits for the other.
TEST_F(Signal, SlotDisconnectsItselfWithWaitingInANestedFiring)
{
    int depth = 0;
    std::shared_ptr<Utils::IConnection> self;
    self = signal.connect(
        [&]
        {
            ++depth;
            if (depth == 1)
                signal();
            else
                self->disconnect(true);
        });
    signal();
    EXPECT_EQ(depth, 2);
    EXPECT_TRUE(signal.isEmpty());
}

TEST_F(Signal, ConnectionOutlivesItsSignal)
{
    std::shared_ptr<Utils::IConnection> connection;
    {
        Utils::Signal<void()> local;
        connection = local.connect(record("a"));
        EXPECT_TRUE(connection->isConnected());
    }
    EXPECT_FALSE(connection->isConnected());
    connection->setEnabled(false, true);
    connection->disconnect(true);
    EXPECT_FALSE(connection->isEnabled());
}

TEST_F(Signal, SlotMayDestroyItsSignal)
{
    auto owned = std::make_unique<Utils::Signal<void()>>();
    auto connection = owned->connect(
        [&]
        {
            calls.push_back("a");
            owned.reset();
        });
    (*owned)();
    EXPECT_THAT(calls, ElementsAre("a"));
    EXPECT_FALSE(connection->isConnected());
}

// One slot per family of exceptions, between slots that return: each exception
// gives one log line, the later slots are called, and the caller sees nothing.
TEST_F(Signal, ExceptionOfASlotIsLoggedAndGoesNoFurther)
{
    struct Case
    {
        const char* name;
        std::function<void()> thrower;
        const char* expectedText;
    };
    const Case cases[] = {
        {"GenICam", [] { throw RUNTIME_EXCEPTION("Value %d out of range.", 7); },
         "SlotCombiner 0x[0-9a-f]+: Exception caught while invoking a slot\\. Message: Value 7 out of "
         "range\\."},
        {"std", [] { throw std::length_error("too long"); },
         "SlotCombiner 0x[0-9a-f]+: Exception caught while invoking a slot\\. Message: too long"},
        {"other", [] { throw 42; },
         "SlotCombiner 0x[0-9a-f]+: Unknown exception caught while invoking a slot\\."},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        Utils::Signal<void()> local;
        std::vector<std::string> order;
        local.connect([&] { order.push_back("before"); });
        local.connect(c.thrower);
        local.connect([&] { order.push_back("after"); });
        SignalTesting::LogCapture capture;
        EXPECT_NO_THROW(local());
        EXPECT_THAT(order, ElementsAre("before", "after"));
        const auto entries = capture.entries();
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(entries[0].severity, Utils::Severitiy_Warning);
        EXPECT_EQ(entries[0].category, "tarvik.dataprocessing.utils.SlotCombiner");
        EXPECT_THAT(entries[0].text, MatchesRegex(c.expectedText));
    }
}

TEST_F(Signal, CombinerRunsUnderTheLockAfterAllCalls)
{
    std::vector<int> depthsInLog;
    const Utils::LogSink previous =
        Utils::setLogSink([&](const Utils::LogEntry&) { depthsInLog.push_back(lockable->depth()); });
    signal.connect([] { throw std::runtime_error("first"); });
    signal.connect(record("second"));
    signal.connect([] { throw std::runtime_error("third"); });
    signal();
    Utils::setLogSink(previous);
    EXPECT_THAT(calls, ElementsAre("second"));
    EXPECT_THAT(depthsInLog, ElementsAre(1, 1));
}
