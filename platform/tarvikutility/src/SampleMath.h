// The per-sample arithmetic every conversion path shares, so that the scalar
// and the vector paths give the same numbers.
#pragma once

#include <algorithm>
#include <cstdint>

namespace Tarvik::Conversion
{

inline uint32_t Luminance(uint32_t red, uint32_t green, uint32_t blue)
{
    return (77 * red + 150 * green + 29 * blue + 128) >> 8;
}

struct Rgb8
{
    uint8_t red;
    uint8_t green;
    uint8_t blue;
};

// Full-range BT.601 in 8-bit fixed point. The products are split as 256 k + m so
// that the vector path can do the same in 16-bit lanes with identical results:
// (359 e + 128) >> 8 == e + ((103 e + 128) >> 8), and likewise for the others.
inline Rgb8 YuvToRgb(int32_t y, int32_t u, int32_t v)
{
    const int32_t d = u - 128;
    const int32_t e = v - 128;
    const int32_t redOffset = e + ((103 * e + 128) >> 8);
    const int32_t greenOffset = -e + ((73 * e - 88 * d + 128) >> 8);
    const int32_t blueOffset = d + ((198 * d + 128) >> 8);
    const auto clamp = [](int32_t value) { return static_cast<uint8_t>(std::clamp(value, 0, 255)); };
    return {clamp(y + redOffset), clamp(y + greenOffset), clamp(y + blueOffset)};
}

} // namespace Tarvik::Conversion
