// Bilinear demosaicing of one row. The rows above and below are the caller's
// choice: the mirrored neighbour at the top and bottom border, null when the
// image is one row high. Columns are mirrored at the left and right border here.
#pragma once

#include "SourceFormat.h"

#include <cstdint>

namespace Tarvik::Conversion
{

struct Rgb16
{
    uint16_t red;
    uint16_t green;
    uint16_t blue;
};

namespace Detail
{

// Rounded mean of the samples that exist; `count` 0 gives nothing.
inline bool MeanOf(uint32_t sum, uint32_t count, uint32_t& mean)
{
    if (count == 0)
    {
        return false;
    }
    mean = (sum + count / 2) / count;
    return true;
}

} // namespace Detail

// One pixel of a row of width samples; works for 8-bit and 16-bit samples.
template <typename Sample>
Rgb16 DemosaicPixel(const Sample* above, const Sample* row, const Sample* below, uint32_t width, uint32_t x,
                    BayerRowKind kind)
{
    const bool hasColumns = width > 1;
    const uint32_t left = x == 0 ? 1 : x - 1;
    const uint32_t right = x + 1 == width ? width - 2 : x + 1;
    const uint32_t centre = row[x];

    uint32_t horizontalSum = 0, horizontalCount = 0, verticalSum = 0, verticalCount = 0, diagonalSum = 0,
             diagonalCount = 0;
    if (hasColumns)
    {
        horizontalSum = uint32_t{row[left]} + row[right];
        horizontalCount = 2;
    }
    if (above != nullptr)
    {
        verticalSum = uint32_t{above[x]} + below[x];
        verticalCount = 2;
        if (hasColumns)
        {
            diagonalSum = uint32_t{above[left]} + above[right] + below[left] + below[right];
            diagonalCount = 4;
        }
    }

    uint32_t own = centre, green = 0, other = 0;
    if ((x & 1u) == kind.colourParity)
    {
        // A red or blue sample: green from the cross, the other colour from the diagonals.
        if (!Detail::MeanOf(horizontalSum + verticalSum, horizontalCount + verticalCount, green))
        {
            green = centre;
        }
        if (!Detail::MeanOf(diagonalSum, diagonalCount, other))
        {
            other = green;
        }
    }
    else
    {
        // A green sample: the row's colour left and right, the other colour above and below.
        green = centre;
        if (!Detail::MeanOf(horizontalSum, horizontalCount, own))
        {
            own = green;
        }
        if (!Detail::MeanOf(verticalSum, verticalCount, other))
        {
            other = green;
        }
    }
    const auto red = static_cast<uint16_t>(kind.redRow ? own : other);
    const auto blue = static_cast<uint16_t>(kind.redRow ? other : own);
    return {red, static_cast<uint16_t>(green), blue};
}

// A whole row into red, green, blue triples.
void DemosaicRow(const uint16_t* above, const uint16_t* row, const uint16_t* below, uint32_t width,
                 BayerRowKind kind, uint16_t* rgb);

} // namespace Tarvik::Conversion
