#include "RowPacker.h"

#include "SampleMath.h"

#include <cstring>

namespace Tarvik::Conversion
{
namespace
{

void StoreSample(uint8_t* out, size_t index, uint32_t value, uint32_t targetDepth)
{
    if (targetDepth == 8)
    {
        out[index] = static_cast<uint8_t>(value);
    }
    else
    {
        out[2 * index] = static_cast<uint8_t>(value);
        out[2 * index + 1] = static_cast<uint8_t>(value >> 8);
    }
}

void StorePixel(TargetKind target, uint8_t* out, uint32_t x, uint32_t red, uint32_t green, uint32_t blue)
{
    const uint32_t depth = TargetDepth(target);
    switch (target)
    {
    case TargetKind::Mono8:
    case TargetKind::Mono16:
        StoreSample(out, x, Luminance(red, green, blue), depth);
        return;
    case TargetKind::RGB8:
    case TargetKind::RGB16:
        StoreSample(out, 3 * size_t{x}, red, depth);
        StoreSample(out, 3 * size_t{x} + 1, green, depth);
        StoreSample(out, 3 * size_t{x} + 2, blue, depth);
        return;
    case TargetKind::BGRa8:
        out[4 * size_t{x}] = static_cast<uint8_t>(blue);
        out[4 * size_t{x} + 1] = static_cast<uint8_t>(green);
        out[4 * size_t{x} + 2] = static_cast<uint8_t>(red);
        out[4 * size_t{x} + 3] = 255;
        return;
    }
}

} // namespace

void PackMonoRow(const uint16_t* mono, uint32_t depth, uint32_t width, TargetKind target, bool msbAligned,
                 uint8_t* out)
{
    const uint32_t targetDepth = TargetDepth(target);
    for (uint32_t x = 0; x < width; ++x)
    {
        const uint32_t value = ConvertDepth(mono[x], depth, targetDepth, msbAligned);
        if (IsMonoTarget(target))
        {
            StoreSample(out, x, value, targetDepth);
        }
        else
        {
            StorePixel(target, out, x, value, value, value);
        }
    }
}

void PackRgbRow(const uint16_t* rgb, uint32_t depth, uint32_t width, TargetKind target, bool msbAligned,
                uint8_t* out)
{
    const uint32_t targetDepth = TargetDepth(target);
    for (uint32_t x = 0; x < width; ++x)
    {
        StorePixel(target, out, x, ConvertDepth(rgb[3 * x], depth, targetDepth, msbAligned),
                   ConvertDepth(rgb[3 * x + 1], depth, targetDepth, msbAligned),
                   ConvertDepth(rgb[3 * x + 2], depth, targetDepth, msbAligned));
    }
}

void ClearPixels(TargetKind target, uint8_t* row, uint32_t x, uint32_t count)
{
    for (uint32_t i = x; i < x + count; ++i)
    {
        StorePixel(target, row, i, 0, 0, 0);
    }
}

} // namespace Tarvik::Conversion
