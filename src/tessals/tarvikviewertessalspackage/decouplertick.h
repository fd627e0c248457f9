// The wait between two ticks of the Decoupler's worker.
#pragma once

#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace TarvikViewerTessalPackage::Detail
{

// The longest period that a 64-bit count of nanoseconds holds, in whole milliseconds.
inline constexpr double longestTickPeriodMs =
    static_cast<double>(std::numeric_limits<int64_t>::max() / 1000000);

// 1000 / fps milliseconds, truncated. A period that is not a positive finite
// number of milliseconds means no wait: "Fps" above 1000, 0, negative or NaN.
// A positive "Fps" so small (below about 1.08e-10) that the period overflows a
// 64-bit count of nanoseconds means no tick at all: nullopt.
inline std::optional<std::chrono::milliseconds> tickPeriod(double fps) noexcept
{
    if (!(fps > 0.0))
        return std::chrono::milliseconds(0);
    const double periodMs = std::trunc(1000.0 / fps);
    if (periodMs > longestTickPeriodMs)
        return std::nullopt;
    return std::chrono::milliseconds(static_cast<int64_t>(periodMs));
}

} // namespace TarvikViewerTessalPackage::Detail
