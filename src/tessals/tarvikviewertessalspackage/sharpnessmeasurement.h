// The pixel level of SharpnessExtractor: the energy of a 3 by 3 Laplacian over a
// region of samples, with the sum and count of the samples it was taken at, and
// the figure of merit made from them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace TarvikViewerTessalPackage::Detail
{

// `height` rows of `width` samples, `stride` bytes apart from `data` on. The
// depth selects the sample: bytes up to 8 bits, 16-bit little-endian words from
// 9 to 16 bits; a greater depth is not measured. Samples are used as they stand.
struct SampleRegion
{
    const uint8_t* data = nullptr;
    size_t stride = 0;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t depth = 0;
};

struct SharpnessSums
{
    double responseEnergy = 0.0;
    double sampleSum = 0.0;
    double sampleCount = 0.0;
};

// Measures every pixel that has all eight neighbours inside the region, row by
// row: the response r = 8 c - (the eight neighbours) in 32-bit integers, and
// responseEnergy += r * r, sampleSum += c, sampleCount += 1, each a double
// addition in row order.
//
// The square of a response is exact whatever its size: it is computed in 64 bits
// and converted to double, so a 16-bit response beyond 46340 neither wraps nor
// overflows.
//
// The result is exactly that of those double additions, though whole rows are
// summed in integers where that is proven to give the same: no term is
// negative, so every partial sum is at most the running integer total, and while
// that total stays at or below 2^53 every partial sum is an integer that a
// double holds exactly. A row is taken in integers only while the totals with it
// stay within 2^53, and only when the sample range and the region's width prove
// that one row's totals cannot pass 2^53 (so neither can they overflow); from
// the first row that could pass it, the sums go on in doubles pixel by pixel.
SharpnessSums measureSharpness(const SampleRegion& region);

// The figure of merit: s = max(sampleSum, 1), n = max(sampleCount, 1), both
// stored back; then log(s / n) * (log(s * responseEnergy / n) * 100), with the
// natural logarithm. A uniform region has energy 0 and gives minus infinity,
// NaN or plus infinity by the sign of log(s / n); these are given out unchanged.
double sharpnessFigure(SharpnessSums& sums);

} // namespace TarvikViewerTessalPackage::Detail
