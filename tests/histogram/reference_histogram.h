// The scalar reference histograms: the counting rules written out sample by
// sample, with no tables and no unrolling. The oracle of every faster path.
#pragma once

#include "sample_grid.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace HistogramTest
{

struct Histograms
{
    std::vector<uint32_t> red;
    std::vector<uint32_t> green;
    std::vector<uint32_t> blue;
    std::vector<uint32_t> lum;
};

// A sample at or above the bin count in a Bayer or colour image.
struct SampleOutOfRange : std::runtime_error
{
    SampleOutOfRange()
        : std::runtime_error("sample out of range")
    {
    }
};

// Samples at or above the bin count are skipped.
inline Histograms referenceMono(const SampleGrid& grid, size_t bins)
{
    Histograms result;
    result.lum.assign(bins, 0);
    for (uint32_t y = 0; y < grid.height; ++y)
        for (uint32_t x = 0; x < grid.width; ++x)
            if (grid.at(x, y) < bins)
                ++result.lum[grid.at(x, y)];
    return result;
}

enum class Pattern
{
    RG = 0,
    GB = 1,
    GR = 2,
    BG = 3
};

// Colour letters of the 2 x 2 cell, row by row: "RGGB" for RG.
inline const char* cellOf(Pattern pattern)
{
    constexpr std::array<const char*, 4> cells = {"RGGB", "GBRG", "GRBG", "BGGR"};
    return cells[static_cast<size_t>(pattern)];
}

// Whole pairs of each row only; an odd last row is an even row of the pattern.
inline Histograms referenceBayer(const SampleGrid& grid, size_t bins, Pattern pattern)
{
    Histograms result;
    result.red.assign(bins, 0);
    result.green.assign(bins, 0);
    result.blue.assign(bins, 0);
    const char* const cell = cellOf(pattern);
    for (uint32_t y = 0; y < grid.height; ++y)
        for (uint32_t x = 0; x < grid.width / 2 * 2; ++x)
        {
            const uint16_t value = grid.at(x, y);
            if (value >= bins)
                throw SampleOutOfRange();
            const char colour = cell[2 * (y % 2) + x % 2];
            std::vector<uint32_t>& channel = colour == 'R'   ? result.red
                                             : colour == 'G' ? result.green
                                                             : result.blue;
            ++channel[value];
        }
    return result;
}

// `order` gives the channel of each sample of a pixel in memory: "RGB" or "BGR".
inline Histograms referenceColor(const SampleGrid& grid, size_t bins, const char* order, bool computeLum)
{
    Histograms result;
    result.red.assign(bins, 0);
    result.green.assign(bins, 0);
    result.blue.assign(bins, 0);
    result.lum.assign(bins, 0);
    for (uint32_t y = 0; y < grid.height; ++y)
        for (uint32_t x = 0; x < grid.width; ++x)
        {
            uint64_t rgb[3] = {};
            for (uint32_t sample = 0; sample < 3; ++sample)
            {
                const uint16_t value = grid.at(x, y, sample);
                if (value >= bins)
                    throw SampleOutOfRange();
                rgb[order[sample] == 'R' ? 0 : order[sample] == 'G' ? 1 : 2] = value;
            }
            ++result.red[rgb[0]];
            ++result.green[rgb[1]];
            ++result.blue[rgb[2]];
            if (computeLum)
            {
                uint64_t luminance = (299 * rgb[0] + 587 * rgb[1] + 114 * rgb[2]) / 1000;
                if (luminance >= bins)
                    luminance = bins - 1;
                ++result.lum[luminance];
            }
        }
    return result;
}

} // namespace HistogramTest
