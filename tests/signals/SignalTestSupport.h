// Tools of the signal tests: a log that captures entries, and a lock that can be
// watched from other threads.
#pragma once

#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>
#include <TarvikDataProcessingCore/utils/Log.h>

#include <atomic>
#include <mutex>
#include <vector>

namespace SignalTesting
{

// Captures every log entry while it lives.
class LogCapture
{
public:
    LogCapture()
        : m_previous(Tarvik::DataProcessing::Utils::setLogSink(
              [this](const Tarvik::DataProcessing::Utils::LogEntry& entry)
              {
                  std::lock_guard guard(m_mutex);
                  m_entries.push_back(entry);
              }))
    {
    }
    ~LogCapture() { Tarvik::DataProcessing::Utils::setLogSink(m_previous); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<Tarvik::DataProcessing::Utils::LogEntry> entries() const
    {
        std::lock_guard guard(m_mutex);
        return m_entries;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Tarvik::DataProcessing::Utils::LogEntry> m_entries;
    Tarvik::DataProcessing::Utils::LogSink m_previous;
};

// A recursive lock that tells how often it was taken and how deeply it is held.
class ObservedLockable final : public Tarvik::DataProcessing::Threading::IRecursiveLockable
{
public:
    void lock() override
    {
        m_mutex.lock();
        ++m_depth;
        ++m_lockCount;
    }
    void unlock() override
    {
        --m_depth;
        m_mutex.unlock();
    }
    int depth() const { return m_depth.load(); }
    int lockCount() const { return m_lockCount.load(); }

private:
    std::recursive_mutex m_mutex;
    std::atomic<int> m_depth{0};
    std::atomic<int> m_lockCount{0};
};

} // namespace SignalTesting
