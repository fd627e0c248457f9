// The sharpness measurement as plainly as it can be written, the oracle of the
// node and of its faster measurement: every pixel with all eight neighbours in
// the region, in row order, each sum a double added pixel by pixel.
#pragma once

#include "sample_grid.h"

#include <algorithm>
#include <cmath>

namespace SharpnessTest
{

struct ReferenceSums
{
    double responseEnergy = 0.0;
    double sampleSum = 0.0;
    double sampleCount = 0.0;
};

// The region of `grid` of `width` x `height` samples at (`left`, `top`).
inline ReferenceSums referenceSums(const HistogramTest::SampleGrid& grid, uint32_t left, uint32_t top,
                                   uint32_t width, uint32_t height)
{
    ReferenceSums sums;
    for (uint32_t y = top + 1; y + 1 < top + height; ++y)
        for (uint32_t x = left + 1; x + 1 < left + width; ++x)
        {
            int32_t neighbours = 0;
            for (uint32_t ny = y - 1; ny <= y + 1; ++ny)
                for (uint32_t nx = x - 1; nx <= x + 1; ++nx)
                    if (nx != x || ny != y)
                        neighbours += grid.at(nx, ny);
            const int32_t centre = grid.at(x, y);
            const int32_t response = 8 * centre - neighbours;
            sums.responseEnergy += static_cast<double>(int64_t{response} * response);
            sums.sampleSum += centre;
            sums.sampleCount += 1.0;
        }
    return sums;
}

inline double referenceFigure(const ReferenceSums& sums)
{
    const double s = std::max(sums.sampleSum, 1.0);
    const double n = std::max(sums.sampleCount, 1.0);
    return std::log(s / n) * (std::log(s * sums.responseEnergy / n) * 100.0);
}

} // namespace SharpnessTest
