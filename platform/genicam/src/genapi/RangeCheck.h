// The checks of a written value against the limits of a feature, and of a
// float against the integer range, with OutOfRangeException texts that name
// the feature and the limit.
#pragma once

#include "Node.h"

#include <cstdint>

namespace GenApi::Detail
{

// The nearest integer to value, halves away from zero; OutOfRangeException naming
// the node if there is none.
int64_t FloatToInteger(const CNode& node, double value);

void CheckRange(const CNode& node, int64_t value, int64_t min, int64_t max, int64_t inc);
// inc 0 means no increment.
void CheckRange(const CNode& node, double value, double min, double max, double inc);

} // namespace GenApi::Detail
