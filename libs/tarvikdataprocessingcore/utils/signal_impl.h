// Signal<void(), VoidCombiner>: notification with a lock of its own, slots called
// outside that lock, connections that can be disconnected or disabled while
// their slot runs, with the option to wait for it, and trackables that end a
// connection.
//
// Thread safety: every field of a signal and of its connections is guarded by
// the signal's lock, which the connections share, so that a connection outlives
// its signal safely. Slots run without it; firings may overlap, and a slot may
// then run twice at once. The combiner runs with the lock held.
//
// Waiting: disconnect(true), setEnabled(false, true) and disconnectAll(true)
// release the lock while they wait, and take it exactly once, so the caller
// must not hold it beyond that. They wait for the calls of the slot on other
// threads only: a slot may end or disable its own connection with waiting and
// goes on. Two threads that wait for each other's calls of slots still deadlock.
// Each library that compiles this header keeps its own record of a thread's
// slot calls: a wait from within a slot sees the call as its own only if the
// firing ran in the library that made the signal.
//
// Chosen here: a signal given a null lock raises "No lockable passed.", as a
// connection would on the first connect. A slot may destroy the signal that
// calls it; the firing ends safely.
#pragma once

#include <TarvikDataProcessingCore/threading/ConditionVariableAny.h>
#include <TarvikDataProcessingCore/threading/RecursiveMutex.h>
#include <TarvikDataProcessingCore/utils/ExceptionPtr.h>
#include <TarvikDataProcessingCore/utils/ISignal.h>
#include <TarvikDataProcessingCore/utils/SlotResult.h>
#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>

#include <GCBase/GCException.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace Tarvik::DataProcessing::Utils
{

namespace Detail
{

// Marks, for its lifetime, one call of the slot of `connection` on this thread.
// The records of a thread form a chain from the innermost call outwards, which
// a slot that fires its own signal again makes longer than one.
class SlotCallRecord
{
public:
    explicit SlotCallRecord(const void* connection) noexcept
        : m_connection(connection)
        , m_outer(innermost)
    {
        innermost = this;
    }
    ~SlotCallRecord() { innermost = m_outer; }
    SlotCallRecord(const SlotCallRecord&) = delete;
    SlotCallRecord& operator=(const SlotCallRecord&) = delete;

    // The calls of the slot of `connection` that this thread is running now.
    static int64_t countOnThisThread(const void* connection) noexcept
    {
        int64_t count = 0;
        for (const SlotCallRecord* call = innermost; call; call = call->m_outer)
            count += call->m_connection == connection ? 1 : 0;
        return count;
    }

private:
    static inline thread_local const SlotCallRecord* innermost = nullptr;

    const void* m_connection;
    const SlotCallRecord* m_outer;
};

} // namespace Detail

template <typename Signature, typename Combiner = VoidCombiner>
class Signal;

template <typename Combiner>
class Signal<void(), Combiner> final : public ISignal<void()>
{
public:
    class Connection;
    using ConnectionList = std::vector<std::shared_ptr<Connection>>;
    using Trackables = std::vector<std::shared_ptr<ITrackable>>;

    Signal()
        : Signal(std::make_shared<Threading::RecursiveMutex>())
    {
    }

    explicit Signal(std::shared_ptr<Threading::IRecursiveLockable> lockable)
        : m_lockable(std::move(lockable))
        , m_condition(std::make_shared<Threading::ConditionVariableAny>())
        , m_connections(std::make_shared<ConnectionList>())
    {
        if (!m_lockable)
            throw INVALID_ARGUMENT_EXCEPTION("No lockable passed.");
    }

    // Does not wait: a call still running keeps its connection alive.
    ~Signal() override { disconnectAll(false); }

    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    std::shared_ptr<IConnection> connect(std::function<void()> slot, Trackables trackables = {}) override
    {
        std::shared_ptr<Connection> connection;
        try
        {
            connection = std::make_shared<Connection>(m_lockable, m_condition, m_connections, std::move(slot),
                                                      std::move(trackables));
        }
        catch (const std::bad_alloc&)
        {
            throw BAD_ALLOC_EXCEPTION("Could not allocate connection.");
        }
        Threading::UniqueLock lock(m_lockable.get());
        removeExpired(*m_connections);
        m_connections->push_back(connection);
        return connection;
    }

    bool isEmpty() const override
    {
        Threading::UniqueLock lock(m_lockable.get());
        return m_connections->empty();
    }

    size_t getConnectionCount() const override
    {
        Threading::UniqueLock lock(m_lockable.get());
        return m_connections->size();
    }

    // Calls the enabled slots, in the order of connecting, without the lock; hands
    // their results to the combiner. Connections made or ended during the calls
    // count from the next firing on. A slot may end the signal: what follows the
    // calls uses only what the called connections keep alive.
    void operator()()
    {
        // Outlives the lock: the called connections keep the lockable alive.
        ConnectionList calls;
        Threading::UniqueLock lock(m_lockable.get());
        bool needsCleanup = false;
        calls.reserve(m_connections->size());
        for (const std::shared_ptr<Connection>& connection : *m_connections)
        {
            if (connection->m_state != Connection::Enabled)
            {
                needsCleanup = needsCleanup || connection->isExpired();
                continue;
            }
            calls.push_back(connection);
            ++connection->m_activeCalls;
        }
        if (calls.empty())
        {
            if (needsCleanup)
                removeExpired(*m_connections);
            return;
        }
        Threading::ConditionVariableAny& condition = *m_condition;
        const std::shared_ptr<ConnectionList> connections = m_connections;
        lock.unlock();

        SlotResults results;
        try
        {
            results.reserve(calls.size());
            for (const std::shared_ptr<Connection>& connection : calls)
            {
                if (std::unique_ptr<ISlotResult<void>> result = connection->call(needsCleanup))
                    results.push_back(std::move(result));
            }
        }
        catch (...)
        {
            lock.lock();
            endCalls(calls, condition, needsCleanup ? connections.get() : nullptr);
            throw;
        }
        lock.lock();
        endCalls(calls, condition, needsCleanup ? connections.get() : nullptr);
        Combiner combiner;
        combiner(results);
    }

    // Ends every connection. With `wait`, returns only when no slot of them runs
    // any more on another thread.
    void disconnectAll(bool wait)
    {
        Threading::UniqueLock lock(m_lockable.get());
        const ConnectionList connections = std::exchange(*m_connections, ConnectionList());
        for (const std::shared_ptr<Connection>& connection : connections)
            connection->m_connected = false;
        if (wait)
        {
            for (const std::shared_ptr<Connection>& connection : connections)
                connection->waitForCallsElsewhere(lock);
        }
    }

private:
    // Under the lock. Wakes the waiters whenever calls ended, not only when a
    // count reached zero: a waiter inside a slot waits for its own calls only.
    static void endCalls(const ConnectionList& calls, Threading::ConditionVariableAny& condition,
                         ConnectionList* cleanUp)
    {
        for (const std::shared_ptr<Connection>& connection : calls)
            --connection->m_activeCalls;
        condition.notifyAll();
        if (cleanUp)
            removeExpired(*cleanUp);
    }

    // Under the lock.
    static void removeExpired(ConnectionList& connections)
    {
        std::erase_if(connections,
                      [](const std::shared_ptr<Connection>& connection)
                      {
                          if (!connection->isExpired())
                              return false;
                          connection->m_connected = false;
                          return true;
                      });
    }

    std::shared_ptr<Threading::IRecursiveLockable> m_lockable;
    std::shared_ptr<Threading::ConditionVariableAny> m_condition;
    std::shared_ptr<ConnectionList> m_connections;
};

// One slot on one signal. Shares the signal's lock and condition, and refers to
// its list weakly, so that it can be used safely after the signal's end.
template <typename Combiner>
class Signal<void(), Combiner>::Connection final : public IConnection
{
public:
    Connection(std::shared_ptr<Threading::IRecursiveLockable> lockable,
               std::shared_ptr<Threading::ConditionVariableAny> condition,
               const std::shared_ptr<ConnectionList>& connectionList, std::function<void()> slot,
               Trackables trackables)
        : m_lockable(std::move(lockable))
        , m_condition(std::move(condition))
        , m_connectionList(connectionList)
        , m_slot(std::move(slot))
        , m_trackables(std::move(trackables))
    {
        if (!m_lockable)
            throw INVALID_ARGUMENT_EXCEPTION("No lockable passed.");
        if (!m_condition)
            throw INVALID_ARGUMENT_EXCEPTION("No condition variable passed.");
        if (!connectionList)
            throw INVALID_ARGUMENT_EXCEPTION("No connection list passed.");
        if (!m_slot)
            throw INVALID_ARGUMENT_EXCEPTION("No valid function passed.");
        for (const std::shared_ptr<ITrackable>& trackable : m_trackables)
        {
            if (!trackable)
                throw BAD_ALLOC_EXCEPTION("Invalid trackable object passed.");
        }
    }

    void disconnect(bool wait) override
    {
        // Released after the lock, in case the list held the last reference.
        std::shared_ptr<Connection> erased;
        Threading::UniqueLock lock(m_lockable.get());
        if (m_connected)
        {
            if (const std::shared_ptr<ConnectionList> list = m_connectionList.lock())
            {
                const auto it = std::find_if(list->begin(), list->end(),
                                             [this](const std::shared_ptr<Connection>& connection)
                                             { return connection.get() == this; });
                if (it != list->end())
                {
                    erased = std::move(*it);
                    list->erase(it);
                }
            }
            m_connected = false;
        }
        if (wait)
            waitForCallsElsewhere(lock);
    }

    bool isConnected() const override
    {
        Threading::UniqueLock lock(m_lockable.get());
        return m_connected && !m_connectionList.expired();
    }

    void setEnabled(bool enabled, bool wait) override
    {
        Threading::UniqueLock lock(m_lockable.get());
        if (!enabled && !wait && m_state != Enabled)
            return;
        while (m_state == Disabling)
            m_condition->wait(lock);
        if (enabled)
        {
            m_state = Enabled;
            return;
        }
        m_state = Disabling;
        if (wait)
            waitForCallsElsewhere(lock);
        m_state = Disabled;
        m_condition->notifyAll();
    }

    bool isEnabled() const override
    {
        Threading::UniqueLock lock(m_lockable.get());
        return m_state != Disabled;
    }

    bool isExpired() const override
    {
        return std::any_of(m_trackables.begin(), m_trackables.end(),
                           [](const std::shared_ptr<ITrackable>& trackable)
                           { return trackable->isExpired(); });
    }

private:
    friend class Signal;

    enum State : uint8_t
    {
        Enabled = 0,
        Disabling = 1, // waits for the calls in progress to end
        Disabled = 2,
    };

    // Without the lock. Null when a trackable has gone: the slot is skipped.
    std::unique_ptr<ISlotResult<void>> call(bool& needsCleanup) const
    {
        std::vector<std::shared_ptr<void>> keptAlive;
        keptAlive.reserve(m_trackables.size());
        for (const std::shared_ptr<ITrackable>& trackable : m_trackables)
        {
            std::shared_ptr<void> object = trackable->lock();
            if (!object)
            {
                needsCleanup = true;
                return nullptr;
            }
            keptAlive.push_back(std::move(object));
        }

        const Detail::SlotCallRecord record(this);
        ISlotResult<void>* result = nullptr;
        try
        {
            m_slot();
            result = new (std::nothrow) ValueResult<void>();
        }
        catch (...)
        {
            result = new (std::nothrow) ExceptionResult<void>(getCurrentException());
        }
        if (!result)
            throw BAD_ALLOC_EXCEPTION("Could not allocate slot result.");
        return std::unique_ptr<ISlotResult<void>>(result);
    }

    // Under the lock, held once through `lock`.
    void waitForCallsElsewhere(Threading::UniqueLock& lock)
    {
        const int64_t ownCalls = Detail::SlotCallRecord::countOnThisThread(this);
        while (m_activeCalls > ownCalls)
            m_condition->wait(lock);
    }

    std::shared_ptr<Threading::IRecursiveLockable> m_lockable;
    std::shared_ptr<Threading::ConditionVariableAny> m_condition;
    std::weak_ptr<ConnectionList> m_connectionList;
    std::function<void()> m_slot;
    Trackables m_trackables;
    uint8_t m_state = Enabled;
    bool m_connected = true;
    int64_t m_activeCalls = 0;
};

} // namespace Tarvik::DataProcessing::Utils
