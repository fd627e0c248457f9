#include "RowUnpacker.h"

#include "PackedRowKernels.h"
#include "SampleMath.h"

#include <algorithm>

#include <cstring>

namespace Tarvik::Conversion
{
namespace
{

uint16_t LoadWord(const uint8_t* bytes)
{
    return static_cast<uint16_t>(bytes[0] | (bytes[1] << 8));
}

uint32_t LoadDoubleWord(const uint8_t* bytes)
{
    return uint32_t{bytes[0]} | (uint32_t{bytes[1]} << 8) | (uint32_t{bytes[2]} << 16) |
           (uint32_t{bytes[3]} << 24);
}

// Sample `index` of `bits` bits from a least-significant-bit-first stream. Reads
// only the bytes the sample occupies.
uint16_t LsbStreamSample(const uint8_t* row, size_t index, uint32_t bits)
{
    const size_t bitOffset = index * bits;
    const size_t first = bitOffset / 8;
    const size_t last = (bitOffset + bits - 1) / 8;
    uint32_t word = 0;
    for (size_t byte = first; byte <= last; ++byte)
    {
        word |= uint32_t{row[byte]} << (8 * (byte - first));
    }
    return static_cast<uint16_t>((word >> (bitOffset % 8)) & ((1u << bits) - 1));
}

// Two samples in three bytes, high bits outside, low bits in the middle byte.
void UnpackGroupedMsb(const uint8_t* row, uint32_t width, uint32_t depth, uint16_t* out)
{
    const uint32_t lowBits = depth - 8;
    const uint32_t lowMask = (1u << lowBits) - 1;
    for (uint32_t x = 0; x < width; x += 2)
    {
        const uint8_t* group = row + 3 * (x / 2);
        out[x] = static_cast<uint16_t>((group[0] << lowBits) | (group[1] & lowMask));
        if (x + 1 < width)
        {
            out[x + 1] = static_cast<uint16_t>((group[2] << lowBits) | ((group[1] >> 4) & lowMask));
        }
    }
}

// Least-significant-bit-first streams of the common depths, a whole group at a time.
void UnpackLsb12(const uint8_t* row, uint32_t width, uint16_t* out)
{
    uint32_t x = 0;
    for (; x + 2 <= width; x += 2, row += 3)
    {
        out[x] = static_cast<uint16_t>(row[0] | ((row[1] & 0x0F) << 8));
        out[x + 1] = static_cast<uint16_t>((row[1] >> 4) | (row[2] << 4));
    }
    if (x < width)
    {
        out[x] = static_cast<uint16_t>(row[0] | ((row[1] & 0x0F) << 8));
    }
}

void UnpackLsb10(const uint8_t* row, uint32_t width, uint16_t* out)
{
    uint32_t x = 0;
    for (; x + 4 <= width; x += 4, row += 5)
    {
        const uint64_t group = uint64_t{row[0]} | (uint64_t{row[1]} << 8) | (uint64_t{row[2]} << 16) |
                               (uint64_t{row[3]} << 24) | (uint64_t{row[4]} << 32);
        out[x] = static_cast<uint16_t>(group & 0x3FF);
        out[x + 1] = static_cast<uint16_t>((group >> 10) & 0x3FF);
        out[x + 2] = static_cast<uint16_t>((group >> 20) & 0x3FF);
        out[x + 3] = static_cast<uint16_t>((group >> 30) & 0x3FF);
    }
    for (uint32_t i = 0; x < width; ++x, ++i)
    {
        out[x] = LsbStreamSample(row, i, 10);
    }
}

void UnpackWords(const uint8_t* row, size_t count, uint32_t depth, uint16_t* out)
{
    const auto maximum = static_cast<uint16_t>((1u << depth) - 1);
    for (size_t i = 0; i < count; ++i)
    {
        out[i] = std::min(LoadWord(row + 2 * i), maximum);
    }
}

void StoreRgb(uint16_t* out, uint32_t x, uint32_t first, uint32_t second, uint32_t third, bool blueFirst)
{
    out[3 * x + 0] = static_cast<uint16_t>(blueFirst ? third : first);
    out[3 * x + 1] = static_cast<uint16_t>(second);
    out[3 * x + 2] = static_cast<uint16_t>(blueFirst ? first : third);
}

} // namespace

YuvSample YuvSampleAt(const uint8_t* row, uint32_t width, YuvLayout layout, uint32_t x)
{
    switch (layout)
    {
    case YuvLayout::Uyvy422:
    {
        const uint32_t pair = 2 * (x & ~1u);
        const bool hasV = (x | 1u) < width;
        return {row[2 * x + 1], row[pair], hasV ? row[pair + 2] : uint8_t{128}};
    }
    case YuvLayout::Yuyv422:
    {
        const uint32_t pair = 2 * (x & ~1u);
        const bool hasV = (x | 1u) < width;
        return {row[2 * x], row[pair + 1], hasV ? row[pair + 3] : uint8_t{128}};
    }
    case YuvLayout::Uyyvyy411:
    {
        // U Y0 Y1 V Y2 Y3 per group of four pixels.
        static constexpr uint32_t kYOffset[4] = {1, 2, 4, 5};
        const uint32_t group = 6 * (x / 4);
        const bool hasV = (x & ~3u) + 2 < width;
        return {row[group + kYOffset[x % 4]], row[group], hasV ? row[group + 3] : uint8_t{128}};
    }
    case YuvLayout::Uyv444:
    case YuvLayout::None:
        break;
    }
    return {row[3 * x + 1], row[3 * x], row[3 * x + 2]};
}

void UnpackPackedSamples(const uint8_t* row, uint32_t count, const SourceFormat& format, uint16_t* out)
{
    if (format.packing == PixelPacking::GroupedMsb)
    {
        UnpackGroupedMsb(row, count, format.depth, out);
        return;
    }
    if (format.depth == 12)
    {
        UnpackLsb12(row, count, out);
        return;
    }
    if (format.depth == 10)
    {
        UnpackLsb10(row, count, out);
        return;
    }
    for (uint32_t x = 0; x < count; ++x)
    {
        out[x] = LsbStreamSample(row, x, format.depth);
    }
}

void UnpackMonoRow(const SourceImage& source, uint32_t y, uint16_t* out)
{
    const SourceFormat& format = source.format;
    const uint8_t* row = source.Row(y);
    const uint32_t width = source.width;
    if (format.family == PixelFamily::YUV)
    {
        for (uint32_t x = 0; x < width; ++x)
        {
            out[x] = YuvSampleAt(row, width, format.yuv, x).y;
        }
        return;
    }
    switch (format.packing)
    {
    case PixelPacking::Unpacked:
        if (format.depth <= 8)
        {
            std::copy(row, row + width, out);
        }
        else
        {
            ClampedWordsRow(row, out, width, format.depth);
        }
        return;
    case PixelPacking::GroupedMsb:
    case PixelPacking::LsbStream:
        if (HasPackedRowKernel(format))
        {
            PackedRowToWords(row, reinterpret_cast<uint8_t*>(out), width, format, false, false);
        }
        else
        {
            UnpackPackedSamples(row, width, format, out);
        }
        return;
    case PixelPacking::Packed565:
    case PixelPacking::Packed10In32:
    case PixelPacking::Planar:
        break;
    }
}

uint32_t ColorRowDepth(const SourceFormat& format)
{
    return format.family == PixelFamily::YUV ? 8 : format.depth;
}

void UnpackColorRow(const SourceImage& source, uint32_t y, uint16_t* out)
{
    const SourceFormat& format = source.format;
    const uint8_t* row = source.Row(y);
    const uint32_t width = source.width;
    if (format.family == PixelFamily::YUV)
    {
        for (uint32_t x = 0; x < width; ++x)
        {
            const YuvSample sample = YuvSampleAt(row, width, format.yuv, x);
            const Rgb8 rgb = YuvToRgb(sample.y, sample.u, sample.v);
            StoreRgb(out, x, rgb.red, rgb.green, rgb.blue, false);
        }
        return;
    }
    const uint32_t channels = format.storedChannels;
    switch (format.packing)
    {
    case PixelPacking::Unpacked:
        for (uint32_t x = 0; x < width; ++x)
        {
            uint16_t samples[3] = {};
            if (format.depth <= 8)
            {
                std::copy(row + channels * x, row + channels * x + 3, samples);
            }
            else
            {
                UnpackWords(row + 2 * channels * x, 3, format.depth, samples);
            }
            StoreRgb(out, x, samples[0], samples[1], samples[2], format.blueFirst);
        }
        return;
    case PixelPacking::LsbStream:
        for (uint32_t x = 0; x < width; ++x)
        {
            StoreRgb(out, x, LsbStreamSample(row, 3 * x, format.depth),
                     LsbStreamSample(row, 3 * x + 1, format.depth),
                     LsbStreamSample(row, 3 * x + 2, format.depth), format.blueFirst);
        }
        return;
    case PixelPacking::Packed565:
        for (uint32_t x = 0; x < width; ++x)
        {
            const uint32_t word = LoadWord(row + 2 * x);
            StoreRgb(out, x, (word & 0x1F) << 1, (word >> 5) & 0x3F, (word >> 11) << 1, format.blueFirst);
        }
        return;
    case PixelPacking::Packed10In32:
        for (uint32_t x = 0; x < width; ++x)
        {
            const uint32_t word = LoadDoubleWord(row + 4 * x);
            StoreRgb(out, x, word & 0x3FF, (word >> 10) & 0x3FF, (word >> 20) & 0x3FF, format.blueFirst);
        }
        return;
    case PixelPacking::Planar:
    {
        const uint8_t* planes[3] = {source.Row(y, 0), source.Row(y, 1), source.Row(y, 2)};
        for (uint32_t x = 0; x < width; ++x)
        {
            uint16_t samples[3] = {};
            for (uint32_t plane = 0; plane < 3; ++plane)
            {
                samples[plane] = format.depth <= 8
                                     ? planes[plane][x]
                                     : std::min(LoadWord(planes[plane] + 2 * x),
                                                static_cast<uint16_t>((1u << format.depth) - 1));
            }
            StoreRgb(out, x, samples[0], samples[1], samples[2], false);
        }
        return;
    }
    case PixelPacking::GroupedMsb:
        break;
    }
}

} // namespace Tarvik::Conversion
