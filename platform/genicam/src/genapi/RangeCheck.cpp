#include "RangeCheck.h"

#include "Text.h"

#include <GCBase/GCException.h>

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <limits>

namespace GenApi::Detail
{

int64_t FloatToInteger(const CNode& node, double value)
{
    // 2^63 is the first double above the int64_t range.
    constexpr double limit = 9223372036854775808.0;
    const double rounded = std::round(value); // halves away from zero
    if (!(rounded >= -limit && rounded < limit))
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %s has no integer counterpart", node.Name().c_str(),
                                     FormatFloat(value).c_str());
    return static_cast<int64_t>(rounded);
}

void CheckRange(const CNode& node, int64_t value, int64_t min, int64_t max, int64_t inc)
{
    if (value < min)
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %" PRId64 " below minimum %" PRId64, node.Name().c_str(),
                                     value, min);
    if (value > max)
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %" PRId64 " above maximum %" PRId64, node.Name().c_str(),
                                     value, max);
    if (inc <= 0)
        throw OUT_OF_RANGE_EXCEPTION("[%s] increment %" PRId64 " is not positive", node.Name().c_str(), inc);
    // value >= min here, so the difference fits in 64 unsigned bits.
    const uint64_t offset = static_cast<uint64_t>(value) - static_cast<uint64_t>(min);
    if (offset % static_cast<uint64_t>(inc) != 0)
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %" PRId64 " off the increment grid of minimum %" PRId64
                                     " and increment %" PRId64,
                                     node.Name().c_str(), value, min, inc);
}

void CheckRange(const CNode& node, double value, double min, double max, double inc)
{
    if (std::isnan(value))
        throw OUT_OF_RANGE_EXCEPTION("[%s] value NaN is not a number", node.Name().c_str());
    if (value < min)
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %s below minimum %s", node.Name().c_str(),
                                     FormatFloat(value).c_str(), FormatFloat(min).c_str());
    if (value > max)
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %s above maximum %s", node.Name().c_str(),
                                     FormatFloat(value).c_str(), FormatFloat(max).c_str());
    if (inc > 0)
    {
        // Allow the rounding error of a value that a client computed as min + k * inc.
        const double steps = std::nearbyint((value - min) / inc);
        const double tolerance = 1e-9 * std::max({1.0, std::fabs(value), std::fabs(inc)});
        if (std::fabs(min + steps * inc - value) > tolerance)
            throw OUT_OF_RANGE_EXCEPTION(
                "[%s] value %s off the increment grid of minimum %s and increment %s", node.Name().c_str(),
                FormatFloat(value).c_str(), FormatFloat(min).c_str(), FormatFloat(inc).c_str());
    }
}

} // namespace GenApi::Detail
