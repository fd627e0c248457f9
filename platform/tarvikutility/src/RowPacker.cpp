#include "RowPacker.h"

#include "SampleMath.h"

#include <cstring>

namespace Tarvik::Conversion
{
namespace
{

// value >> right << left turns a sample of one depth into one of another.
struct DepthShift
{
    uint32_t right;
    uint32_t left;
};

DepthShift ShiftFor(uint32_t from, uint32_t to, bool msbAligned)
{
    if (from > to)
    {
        return {from - to, 0};
    }
    return {0, msbAligned ? to - from : 0};
}

uint32_t Shifted(uint32_t value, DepthShift shift)
{
    return value >> shift.right << shift.left;
}

void StoreWord(uint8_t* out, size_t index, uint32_t value)
{
    out[2 * index] = static_cast<uint8_t>(value);
    out[2 * index + 1] = static_cast<uint8_t>(value >> 8);
}

} // namespace

void PackMonoRow(const uint16_t* mono, uint32_t depth, uint32_t width, TargetKind target, bool msbAligned,
                 uint8_t* out)
{
    // One loop per output, so that no pixel asks which output it is for.
    const DepthShift shift = ShiftFor(depth, TargetDepth(target), msbAligned);
    switch (target)
    {
    case TargetKind::Mono8:
        for (uint32_t x = 0; x < width; ++x)
            out[x] = static_cast<uint8_t>(Shifted(mono[x], shift));
        return;
    case TargetKind::Mono16:
        for (uint32_t x = 0; x < width; ++x)
            StoreWord(out, x, Shifted(mono[x], shift));
        return;
    case TargetKind::RGB8:
        for (uint32_t x = 0; x < width; ++x)
            std::memset(out + 3 * size_t{x}, static_cast<uint8_t>(Shifted(mono[x], shift)), 3);
        return;
    case TargetKind::RGB16:
        for (uint32_t x = 0; x < width; ++x)
        {
            const uint32_t value = Shifted(mono[x], shift);
            for (size_t channel = 0; channel < 3; ++channel)
                StoreWord(out, 3 * size_t{x} + channel, value);
        }
        return;
    case TargetKind::BGRa8:
        for (uint32_t x = 0; x < width; ++x)
        {
            const auto value = static_cast<uint8_t>(Shifted(mono[x], shift));
            const uint8_t pixel[4] = {value, value, value, 255};
            std::memcpy(out + 4 * size_t{x}, pixel, 4);
        }
        return;
    }
}

void PackRgbRow(const uint16_t* rgb, uint32_t depth, uint32_t width, TargetKind target, bool msbAligned,
                uint8_t* out)
{
    const DepthShift shift = ShiftFor(depth, TargetDepth(target), msbAligned);
    switch (target)
    {
    case TargetKind::Mono8:
    case TargetKind::Mono16:
        for (uint32_t x = 0; x < width; ++x)
        {
            const uint32_t value = Luminance(Shifted(rgb[3 * x], shift), Shifted(rgb[3 * x + 1], shift),
                                             Shifted(rgb[3 * x + 2], shift));
            if (target == TargetKind::Mono8)
                out[x] = static_cast<uint8_t>(value);
            else
                StoreWord(out, x, value);
        }
        return;
    case TargetKind::RGB8:
        for (size_t i = 0; i < 3 * size_t{width}; ++i)
            out[i] = static_cast<uint8_t>(Shifted(rgb[i], shift));
        return;
    case TargetKind::RGB16:
        for (size_t i = 0; i < 3 * size_t{width}; ++i)
            StoreWord(out, i, Shifted(rgb[i], shift));
        return;
    case TargetKind::BGRa8:
        for (uint32_t x = 0; x < width; ++x)
        {
            const uint8_t pixel[4] = {static_cast<uint8_t>(Shifted(rgb[3 * x + 2], shift)),
                                      static_cast<uint8_t>(Shifted(rgb[3 * x + 1], shift)),
                                      static_cast<uint8_t>(Shifted(rgb[3 * x], shift)), 255};
            std::memcpy(out + 4 * size_t{x}, pixel, 4);
        }
        return;
    }
}

void ClearPixels(TargetKind target, uint8_t* row, uint32_t x, uint32_t count)
{
    if (target != TargetKind::BGRa8)
    {
        static constexpr size_t kBytesPerPixel[] = {1, 2, 3, 6};
        const size_t bytes = kBytesPerPixel[static_cast<size_t>(target)];
        std::memset(row + bytes * x, 0, bytes * count);
        return;
    }
    static constexpr uint8_t kOpaqueBlack[4] = {0, 0, 0, 255};
    for (uint32_t i = x; i < x + count; ++i)
        std::memcpy(row + 4 * size_t{i}, kOpaqueBlack, 4);
}

} // namespace Tarvik::Conversion
