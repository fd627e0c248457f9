// The scalar reference histograms: the counting rules written out sample by
// sample, with no tables and no unrolling. The oracle of every faster path.
#pragma once

#include "sample_grid.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <vector>

namespace HistogramTest
{

// All four channels of `bins` counters; what a path does not count stays 0.
struct Histograms
{
    explicit Histograms(size_t bins)
        : red(bins)
        , green(bins)
        , blue(bins)
        , lum(bins)
    {
    }

    // The channel of a colour letter: 'R', 'G' or 'B'.
    std::vector<uint32_t>& channel(char colour) { return colour == 'R' ? red : colour == 'G' ? green : blue; }

    std::vector<uint32_t> red;
    std::vector<uint32_t> green;
    std::vector<uint32_t> blue;
    std::vector<uint32_t> lum;
};

// Samples at or above the bin count are skipped.
inline Histograms referenceMono(const SampleGrid& grid, size_t bins)
{
    Histograms result(bins);
    for (const uint16_t sample : grid.samples)
        if (sample < bins)
            ++result.lum[sample];
    return result;
}

enum class Pattern
{
    RG = 0,
    GB = 1,
    GR = 2,
    BG = 3
};

// Whole pairs of each row only; an odd last row is an even row of the pattern.
// A sample at or above the bin count throws, as it fails the sampler.
inline Histograms referenceBayer(const SampleGrid& grid, size_t bins, Pattern pattern)
{
    Histograms result(bins);
    // Colour letters of the 2 x 2 cell, row by row: "RGGB" for RG.
    const char* const cell = std::array{"RGGB", "GBRG", "GRBG", "BGGR"}[static_cast<size_t>(pattern)];
    for (uint32_t y = 0; y < grid.height; ++y)
        for (uint32_t x = 0; x < grid.width / 2 * 2; ++x)
            ++result.channel(cell[2 * (y % 2) + x % 2]).at(grid.at(x, y));
    return result;
}

// `order` gives the channel of each sample of a pixel in memory: "RGB" or "BGR".
// A sample at or above the bin count throws, as it fails the sampler.
inline Histograms referenceColor(const SampleGrid& grid, size_t bins, const char* order, bool computeLum)
{
    Histograms result(bins);
    for (uint32_t y = 0; y < grid.height; ++y)
        for (uint32_t x = 0; x < grid.width; ++x)
        {
            std::map<char, uint64_t> value;
            for (uint32_t sample = 0; sample < 3; ++sample)
            {
                value[order[sample]] = grid.at(x, y, sample);
                ++result.channel(order[sample]).at(grid.at(x, y, sample));
            }
            if (computeLum)
                ++result.lum[std::min<uint64_t>(
                    (299 * value['R'] + 587 * value['G'] + 114 * value['B']) / 1000, bins - 1)];
        }
    return result;
}

} // namespace HistogramTest
