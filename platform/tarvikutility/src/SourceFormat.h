// What the converter needs to know to read a source pixel type, derived once
// from the TarvikBase table.
#pragma once

#include <TarvikBase/PixelTypeInfo.h>

#include <cstdint>
#include <optional>

namespace Tarvik::Conversion
{

// The colours of the first two samples of the first row in memory.
enum class BayerPhase : uint8_t
{
    RG,
    GB,
    GR,
    BG,
};

enum class YuvLayout : uint8_t
{
    None,
    Uyvy422,
    Yuyv422,
    Uyyvyy411,
    Uyv444,
};

struct SourceFormat
{
    EPixelType type;
    PixelFamily family;
    PixelPacking packing;
    uint32_t depth;
    uint32_t bitsPerPixel;
    // Samples of one pixel in memory: 1 for mono and Bayer, 3 or 4 for colour.
    uint32_t storedChannels;
    // Blue comes first in memory (or in the lowest bits).
    bool blueFirst;
    BayerPhase phase;
    YuvLayout yuv;
};

// Nothing for a type the converter cannot read.
std::optional<SourceFormat> DescribeSource(EPixelType type);

// Where the colour samples of one Bayer row are: the row holds green and one
// other colour, which is red or blue and sits at even or odd columns.
struct BayerRowKind
{
    bool redRow;
    uint32_t colourParity;
};

BayerRowKind BayerRowKindOf(BayerPhase phase, uint32_t row);

} // namespace Tarvik::Conversion
