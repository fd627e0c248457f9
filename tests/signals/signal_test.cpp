// Signal on one thread: order, lock, trackables, changes during a firing,
// disconnecting from a slot, and exceptions of slots.
#include "failure_text.h"
#include "log_capture.h"
#include "observed_lockable.h"

#include <tarvikdataprocessingcore/utils/signal_impl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace Tarvik::DataProcessing;
using ::testing::ElementsAre;

namespace
{

class Signal : public ::testing::Test
{
protected:
    std::shared_ptr<ObservedLockable> lockable = std::make_shared<ObservedLockable>();
    Utils::Signal<void()> signal{lockable};
    std::vector<std::string> calls;
    LogCapture log;

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

// A slot may destroy the signal that calls it: the firing ends safely.
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

// Slots that throw, around one that returns: the others are called, the caller
// sees nothing, and the combiner logs each exception after all calls, under the
// signal's lock.
TEST_F(Signal, ExceptionsOfSlotsAreLoggedAfterTheCallsUnderTheLock)
{
    const Utils::LogSink previous =
        Utils::setLogSink([&](const Utils::LogEntry&)
                          { calls.push_back("log at depth " + std::to_string(lockable->depth())); });
    signal.connect([] { throw RUNTIME_EXCEPTION("Value %d out of range.", 7); });
    signal.connect(record("second"));
    signal.connect([] { throw 42; });
    EXPECT_NO_THROW(signal());
    Utils::setLogSink(previous);
    EXPECT_THAT(calls, ElementsAre("second", "log at depth 1", "log at depth 1"));
}
