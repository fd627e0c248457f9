#include "log_capture.h"

using namespace Tarvik::DataProcessing::Utils;

LogCapture::LogCapture()
    : m_previous(setLogSink(
          [this](const LogEntry& entry)
          {
              std::lock_guard guard(m_mutex);
              m_entries.push_back(entry);
          }))
{
}

LogCapture::~LogCapture()
{
    setLogSink(m_previous);
}

std::vector<LogEntry> LogCapture::entries() const
{
    std::lock_guard guard(m_mutex);
    return m_entries;
}
