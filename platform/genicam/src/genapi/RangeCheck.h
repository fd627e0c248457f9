// The checks of a written value against the limits of a feature, with
// OutOfRangeException texts that name the feature and the limit.
#pragma once

#include "Node.h"

#include <cstdint>

namespace GenApi::Detail
{

void CheckIntegerRange(const CNode& node, int64_t value, int64_t min, int64_t max, int64_t inc);
// inc 0 means no increment.
void CheckFloatRange(const CNode& node, double value, double min, double max, double inc);

} // namespace GenApi::Detail
