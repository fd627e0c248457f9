// A point in wall-clock time, as errors carry it.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <GCBase/GCString.h>

#include <chrono>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API DateTime
{
public:
    using Clock = std::chrono::system_clock;

    DateTime() = default;
    explicit DateTime(Clock::time_point time)
        : m_time(time)
    {
    }

    static DateTime now();

    Clock::time_point getTimePoint() const { return m_time; }
    // ISO 8601 in UTC with milliseconds: "2026-11-23T01:15:29.123Z".
    GenICam::gcstring toString() const;

    friend auto operator<=>(const DateTime&, const DateTime&) = default;

private:
    Clock::time_point m_time{};
};

} // namespace Tarvik::DataProcessing::Utils
