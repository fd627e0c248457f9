// Signal across threads: stopping a connection while its slot runs elsewhere,
// the end of a signal during a call, and firings that overlap with connecting
// and waiting disconnects.
#include "observed_lockable.h"

#include <tarvikdataprocessingcore/utils/signal_impl.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

using namespace Tarvik::DataProcessing;

namespace
{

using SignalType = Utils::Signal<void()>;

struct StopCase
{
    const char* name;
    std::function<void(SignalType&, Utils::IConnection&)> stop;
    // Runs in the slot while the stopper waits for it.
    std::function<void(SignalType&, Utils::IConnection&)> checkWhileWaiting;
};

} // namespace

// The slot notices that the stopper has taken the lock, and then takes the lock
// itself, which it gets only once the stopper waits. The stopper must return
// only after the slot has finished, and the stopped slot is no longer called.
TEST(SignalThreads, WaitingStopReturnsOnlyAfterTheSlotOnAnotherThread)
{
    const StopCase cases[] = {
        {"disconnect", [](SignalType&, Utils::IConnection& c) { c.disconnect(true); },
         [](SignalType&, Utils::IConnection& c) { EXPECT_FALSE(c.isConnected()); }},
        {"disable", [](SignalType&, Utils::IConnection& c) { c.setEnabled(false, true); },
         [](SignalType&, Utils::IConnection& c)
         { EXPECT_TRUE(c.isEnabled()) << "being disabled counts as enabled"; }},
        {"disconnectAll", [](SignalType& s, Utils::IConnection&) { s.disconnectAll(true); },
         [](SignalType& s, Utils::IConnection&) { EXPECT_EQ(s.getConnectionCount(), 0u); }},
    };
    for (const StopCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        const auto lockable = std::make_shared<ObservedLockable>();
        SignalType signal(lockable);
        std::atomic<int> calls{0};
        std::atomic<bool> slotFinished{false};
        std::promise<void> entered;
        std::shared_ptr<Utils::IConnection> connection;
        connection = signal.connect(
            [&]
            {
                ++calls;
                const int locksBefore = lockable->lockCount();
                entered.set_value();
                while (lockable->lockCount() == locksBefore)
                    std::this_thread::yield();
                c.checkWhileWaiting(signal, *connection);
                signal(); // a connection being stopped is not called
                slotFinished = true;
            });

        std::thread firing([&] { signal(); });
        bool slotFinishedWhenStopReturned = false;
        std::thread stopper(
            [&]
            {
                entered.get_future().wait();
                c.stop(signal, *connection);
                slotFinishedWhenStopReturned = slotFinished;
            });
        firing.join();
        stopper.join();

        EXPECT_TRUE(slotFinishedWhenStopReturned);
        signal();
        EXPECT_EQ(calls, 1);
        EXPECT_FALSE(connection->isEnabled() && connection->isConnected());
    }
}

// Two threads run the slot; the second ends the connection with waiting from
// within it. It waits for the first thread's call only, and wakes when that ends.
TEST(SignalThreads, SlotStopsItsConnectionWhileRunningOnAnotherThreadToo)
{
    SignalType signal;
    std::atomic<int> entries{0};
    std::promise<void> firstEntered;
    std::promise<void> secondAboutToWait;
    std::atomic<bool> firstFinished{false};
    bool firstFinishedWhenWaitEnded = false;
    std::shared_ptr<Utils::IConnection> connection;
    connection = signal.connect(
        [&]
        {
            if (++entries == 1)
            {
                firstEntered.set_value();
                secondAboutToWait.get_future().wait();
                // The second clears the connection and starts waiting in one locked step.
                while (connection->isConnected())
                    std::this_thread::yield();
                firstFinished = true;
            }
            else
            {
                secondAboutToWait.set_value();
                connection->disconnect(true);
                firstFinishedWhenWaitEnded = firstFinished;
            }
        });
    std::thread first([&] { signal(); });
    firstEntered.get_future().wait();
    std::thread second([&] { signal(); });
    first.join();
    second.join();
    EXPECT_TRUE(firstFinishedWhenWaitEnded);
    EXPECT_EQ(entries, 2);
}

// While one thread disables a connection with waiting for its busy slot, a
// second setEnabled waits until that disabling has ended, and then has the last
// word. The slot notices each locking caller by the lock count.
TEST(SignalThreads, SecondSetEnabledWaitsForADisablingInProgress)
{
    const auto lockable = std::make_shared<ObservedLockable>();
    SignalType signal(lockable);
    std::promise<void> entered;
    std::promise<void> release;
    std::atomic<bool> slotFinished{false};
    int calls = 0;
    auto connection = signal.connect(
        [&]
        {
            if (++calls > 1)
                return;
            entered.set_value();
            release.get_future().wait();
            slotFinished = true;
        });
    std::thread firing([&] { signal(); });
    entered.get_future().wait();

    const int locksBefore = lockable->lockCount();
    std::thread disabler([&] { connection->setEnabled(false, true); });
    while (lockable->lockCount() == locksBefore)
        std::this_thread::yield();
    bool slotFinishedWhenEnabled = false;
    std::thread enabler(
        [&]
        {
            connection->setEnabled(true, false);
            slotFinishedWhenEnabled = slotFinished;
        });
    // The enabler has the lock only once the disabler waits for the slot.
    while (lockable->lockCount() == locksBefore + 1)
        std::this_thread::yield();
    release.set_value();
    firing.join();
    disabler.join();
    enabler.join();

    EXPECT_TRUE(slotFinishedWhenEnabled);
    EXPECT_TRUE(connection->isEnabled());
    signal();
    EXPECT_EQ(calls, 2);
}

// Stopping without waiting, and the end of the signal, return while the slot
// still runs on the firing thread; that call and the firing end safely, the slot
// is not called again, and the connection outlives its signal.
TEST(SignalThreads, NonWaitingStopsAndTheEndOfTheSignalReturnWhileTheSlotRuns)
{
    for (const bool signalEnds : {false, true})
    {
        SCOPED_TRACE(signalEnds ? "the signal ends" : "stops without waiting");
        auto signal = std::make_unique<SignalType>();
        SignalType* const firedSignal = signal.get();
        std::promise<void> entered;
        std::promise<void> release;
        std::atomic<int> calls{0};
        std::atomic<bool> finished{false};
        auto connection = signal->connect(
            [&]
            {
                ++calls;
                entered.set_value();
                release.get_future().wait();
                finished = true;
            });
        std::thread firing([&] { (*firedSignal)(); });
        entered.get_future().wait();
        if (signalEnds)
            signal.reset();
        else
        {
            connection->setEnabled(false, false);
            EXPECT_FALSE(connection->isEnabled());
            connection->disconnect(false);
        }
        EXPECT_FALSE(connection->isConnected());
        EXPECT_FALSE(finished);
        release.set_value();
        firing.join();
        EXPECT_TRUE(finished);
        if (signal)
            (*signal)();
        EXPECT_EQ(calls, 1);
        connection->setEnabled(false, true);
        connection->disconnect(true);
        EXPECT_FALSE(connection->isEnabled());
    }
}

// Firings on several threads while connections come and go. Once a waiting
// disconnect or disable has returned, the slot must never run again.
TEST(SignalThreads, NoCallAfterAWaitingStopUnderConcurrentFirings)
{
    struct SlotState
    {
        std::atomic<bool> stopped{false};
        std::atomic<int> calls{0};
    };
    SignalType signal;
    std::atomic<bool> churnDone{false};
    std::atomic<int> violations{0};
    std::vector<std::thread> firings;
    for (int i = 0; i < 3; ++i)
    {
        firings.emplace_back(
            [&]
            {
                while (!churnDone)
                    signal();
            });
    }

    constexpr int rounds = 100;
    std::vector<std::unique_ptr<SlotState>> states;
    for (int round = 0; round < rounds; ++round)
    {
        SlotState* const state = states.emplace_back(std::make_unique<SlotState>()).get();
        auto connection = signal.connect(
            [state, &violations]
            {
                if (state->stopped)
                    ++violations;
                ++state->calls;
            });
        while (state->calls == 0)
            std::this_thread::yield();
        if (round % 2 == 0)
            connection->disconnect(true);
        else
            connection->setEnabled(false, true);
        state->stopped = true;
    }
    churnDone = true;
    for (std::thread& firing : firings)
        firing.join();

    EXPECT_EQ(violations, 0);
    EXPECT_EQ(signal.getConnectionCount(), static_cast<size_t>(rounds / 2));
}
