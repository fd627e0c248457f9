#include <TarvikDataProcessingCore/utils/DateTime.h>

#include <cstdio>
#include <ctime>

namespace Tarvik::DataProcessing::Utils
{

DateTime DateTime::now()
{
    return DateTime(Clock::now());
}

GenICam::gcstring DateTime::toString() const
{
    const auto sinceEpoch = m_time.time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
    const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch - seconds).count();
    const std::time_t whole = seconds.count();
    std::tm utc{};
    gmtime_r(&whole, &utc);
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec, static_cast<int>(millis));
    return text;
}

} // namespace Tarvik::DataProcessing::Utils
