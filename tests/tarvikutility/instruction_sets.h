// The instruction sets a test of the vector kernels pins dispatch to, one after another.
#pragma once

#include <hwy/highway.h>
#include <hwy/targets.h>

#include <cstdint>
#include <vector>

// Every instruction set that the build holds and the CPU offers, and the plain fallback.
inline std::vector<int64_t> instructionSets()
{
    std::vector<int64_t> sets;
    const int64_t available = hwy::SupportedTargets();
    for (const int64_t target : {int64_t{HWY_SCALAR}, int64_t{HWY_SSSE3}, int64_t{HWY_SSE4},
                                 int64_t{HWY_AVX2}, int64_t{HWY_AVX3}, int64_t{HWY_AVX3_DL}})
    {
        if ((HWY_TARGETS & target) != 0 && (target == HWY_SCALAR || (available & target) != 0))
            sets.push_back(target);
    }
    return sets;
}
