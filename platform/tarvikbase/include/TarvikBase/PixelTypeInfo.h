// The one table of pixel types: what every other part of the library derives its
// answers from.
#pragma once

#include <TarvikBase/PixelType.h>
#include <TarvikBase/TarvikBaseExport.h>

#include <span>

namespace Tarvik
{

enum class PixelFamily : uint8_t
{
    Mono,
    Bayer,
    Color,
    YUV,
};

// How the samples of a type lie in memory.
enum class PixelPacking : uint8_t
{
    // One sample per byte (depth 8) or per little-endian 16-bit word (depth 9 to 16),
    // channels interleaved.
    Unpacked,
    // Two samples in three bytes: the outer bytes hold the high 8 bits of the first
    // and the second sample, the middle byte their low bits (first sample in the low
    // nibble).
    GroupedMsb,
    // One little-endian bit stream per row: sample after sample, least significant
    // bit first.
    LsbStream,
    // A 16-bit little-endian word per pixel holding 5, 6 and 5 bits, first channel
    // of the name in the lowest bits.
    Packed565,
    // A 32-bit little-endian word per pixel holding three 10-bit channels, first
    // channel of the name in the lowest bits; the top 2 bits are unused.
    Packed10In32,
    // Three planes of one channel each, red, green, blue.
    Planar,
};

struct PixelTypeInfo
{
    EPixelType type;
    const char* name;
    uint32_t bitsPerPixel;
    uint32_t bitDepth;
    PixelFamily family;
    PixelPacking packing;
};

// Every known type, once, in code order of its family.
TARVIKBASE_API std::span<const PixelTypeInfo> PixelTypeTable();

// The entry of `type`, or null when the type is not in the table.
TARVIKBASE_API const PixelTypeInfo* FindPixelTypeInfo(EPixelType type);

} // namespace Tarvik
