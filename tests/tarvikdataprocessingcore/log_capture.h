// Captures the framework's log entries for the life of the object.
#pragma once

#include <TarvikDataProcessingCore/utils/Log.h>

#include <mutex>
#include <vector>

class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<Tarvik::DataProcessing::Utils::LogEntry> entries() const;

private:
    mutable std::mutex m_mutex;
    std::vector<Tarvik::DataProcessing::Utils::LogEntry> m_entries;
    Tarvik::DataProcessing::Utils::LogSink m_previous;
};
