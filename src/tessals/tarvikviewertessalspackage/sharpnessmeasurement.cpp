// Highway compiles this file once per instruction set and dispatches at run time.
// The vector kernels give the integer totals of one row; the choice between them
// and the plain double sums is made once per row, outside the kernels.
#include "sharpnessmeasurement.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "sharpnessmeasurement.cpp"
#include <hwy/foreach_target.h> // IWYU pragma: keep
#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#ifndef TESSAL_SHARPNESS_SCALAR_ONCE
#define TESSAL_SHARPNESS_SCALAR_ONCE
namespace TarvikViewerTessalPackage::Detail
{

// The integer totals of one row: the sum of r * r and the sum of c.
struct RowTotals
{
    uint64_t energy = 0;
    uint64_t sum = 0;
};

// Three rows of a region, the middle one measured.
struct RowTriple
{
    const uint8_t* above;
    const uint8_t* row;
    const uint8_t* below;
};

struct ByteSample
{
    static constexpr int32_t maximum = 255;
    static int32_t at(const uint8_t* row, size_t x) { return row[x]; }
};

struct WordSample
{
    static constexpr int32_t maximum = 65535;
    static int32_t at(const uint8_t* row, size_t x)
    {
        uint16_t value;
        std::memcpy(&value, row + 2 * x, sizeof value);
        return value;
    }
};

// 8 c minus the eight neighbours of column x.
template <typename Sample>
int32_t responseAt(const RowTriple& rows, size_t x)
{
    const int32_t ring = Sample::at(rows.above, x - 1) + Sample::at(rows.above, x) +
                         Sample::at(rows.above, x + 1) + Sample::at(rows.row, x - 1) +
                         Sample::at(rows.row, x + 1) + Sample::at(rows.below, x - 1) +
                         Sample::at(rows.below, x) + Sample::at(rows.below, x + 1);
    return 8 * Sample::at(rows.row, x) - ring;
}

// Integer totals of columns [x, end).
template <typename Sample>
void addScalarTotals(const RowTriple& rows, size_t x, size_t end, RowTotals& totals)
{
    for (; x < end; ++x)
    {
        const int64_t response = responseAt<Sample>(rows, x);
        totals.energy += static_cast<uint64_t>(response * response);
        totals.sum += static_cast<uint64_t>(Sample::at(rows.row, x));
    }
}

// Vector iterations summed in 32-bit lanes before they are added to the row's
// 64-bit totals: 128 iterations of two 8-bit squares per lane stay below 2^31.
constexpr size_t blockIterations = 128;

} // namespace TarvikViewerTessalPackage::Detail
#endif

HWY_BEFORE_NAMESPACE();
namespace TarvikViewerTessalPackage::Detail::HWY_NAMESPACE
{
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR
// The sum of the eight neighbours of the lanes from column x on, each vector read by `at`.
template <typename Load>
HWY_INLINE auto ringAt(const Load& at, const RowTriple& rows, size_t x)
{
    return hn::Add(hn::Add(hn::Add(at(rows.above, x - 1), at(rows.above, x)),
                           hn::Add(at(rows.above, x + 1), at(rows.row, x - 1))),
                   hn::Add(hn::Add(at(rows.row, x + 1), at(rows.below, x - 1)),
                           hn::Add(at(rows.below, x), at(rows.below, x + 1))));
}

// The lanes of a block's 32-bit accumulator, added in 64 bits.
template <typename D>
uint64_t laneTotal(D d, hn::Vec<D> lanes)
{
    int32_t values[HWY_MAX_BYTES / sizeof(int32_t)];
    hn::StoreU(lanes, d, values);
    uint64_t total = 0;
    for (size_t lane = 0; lane < hn::Lanes(d); ++lane)
        total += static_cast<uint64_t>(values[lane]);
    return total;
}
#endif

RowTotals ByteRowTotalsImpl(RowTriple rows, uint32_t width)
{
    RowTotals totals;
    const size_t end = width - 1;
    size_t x = 1;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<int16_t> d16;
    const hn::Rebind<uint8_t, decltype(d16)> d8;
    const hn::Repartition<int32_t, decltype(d16)> d32;
    const size_t lanes = hn::Lanes(d16);
    const auto one = hn::Set(d16, 1);
    const auto at = [&](const uint8_t* row, size_t column)
    { return hn::PromoteTo(d16, hn::LoadU(d8, row + column)); };
    while (x + lanes <= end)
    {
        auto energy0 = hn::Zero(d32);
        auto energy1 = hn::Zero(d32);
        auto sum0 = hn::Zero(d32);
        auto sum1 = hn::Zero(d32);
        for (size_t i = 0; i < blockIterations && x + lanes <= end; ++i, x += lanes)
        {
            const auto centre = at(rows.row, x);
            const auto ring = ringAt(at, rows, x);
            // |r| <= 2040: a 16-bit lane holds it, and two squares fit a 32-bit lane.
            const auto response = hn::Sub(hn::ShiftLeft<3>(centre), ring);
            energy0 = hn::ReorderWidenMulAccumulate(d32, response, response, energy0, energy1);
            sum0 = hn::ReorderWidenMulAccumulate(d32, centre, one, sum0, sum1);
        }
        totals.energy += laneTotal(d32, energy0) + laneTotal(d32, energy1);
        totals.sum += laneTotal(d32, sum0) + laneTotal(d32, sum1);
    }
#endif
    addScalarTotals<ByteSample>(rows, x, end, totals);
    return totals;
}

RowTotals WordRowTotalsImpl(RowTriple rows, uint32_t width)
{
    RowTotals totals;
    const size_t end = width - 1;
    size_t x = 1;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<int32_t> d32;
    const hn::Rebind<uint16_t, decltype(d32)> d16;
    const hn::Repartition<uint8_t, decltype(d16)> dBytes;
    const hn::Repartition<int64_t, decltype(d32)> d64;
    const hn::Repartition<uint64_t, decltype(d32)> du64;
    const size_t lanes = hn::Lanes(d32);
    // Loaded as bytes: rows of odd padding leave the words unaligned.
    const auto at = [&](const uint8_t* row, size_t column)
    { return hn::PromoteTo(d32, hn::BitCast(d16, hn::LoadU(dBytes, row + 2 * column))); };
    auto energy = hn::Zero(d64);
    while (x + lanes <= end)
    {
        auto sum = hn::Zero(d32);
        for (size_t i = 0; i < blockIterations && x + lanes <= end; ++i, x += lanes)
        {
            const auto centre = at(rows.row, x);
            const auto ring = ringAt(at, rows, x);
            const auto response = hn::Sub(hn::ShiftLeft<3>(centre), ring);
            // Squares of up to 2^39 in 64-bit lanes: the even lanes, then the odd ones moved down.
            const auto odd = hn::BitCast(d32, hn::ShiftRight<32>(hn::BitCast(du64, response)));
            energy = hn::Add(energy, hn::Add(hn::MulEven(response, response), hn::MulEven(odd, odd)));
            sum = hn::Add(sum, centre);
        }
        totals.sum += laneTotal(d32, sum);
    }
    totals.energy = static_cast<uint64_t>(hn::GetLane(hn::SumOfLanes(d64, energy)));
#endif
    addScalarTotals<WordSample>(rows, x, end, totals);
    return totals;
}

// NOLINTNEXTLINE(google-readability-namespace-comments)
} // namespace TarvikViewerTessalPackage::Detail::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace TarvikViewerTessalPackage::Detail
{

HWY_EXPORT(ByteRowTotalsImpl);
HWY_EXPORT(WordRowTotalsImpl);

namespace
{

// Integers up to this are exact in a double, and so is every sum of them that stays within it.
constexpr uint64_t exactLimit = uint64_t{1} << 53;

// The plain double additions of one row, pixel by pixel.
template <typename Sample>
void addRowInDoubles(const RowTriple& rows, uint32_t width, SharpnessSums& sums)
{
    for (size_t x = 1; x + 1 < width; ++x)
    {
        const int64_t response = responseAt<Sample>(rows, x);
        sums.responseEnergy += static_cast<double>(response * response);
        sums.sampleSum += static_cast<double>(Sample::at(rows.row, x));
        sums.sampleCount += 1.0;
    }
}

SharpnessSums inDoubles(const RowTotals& totals, uint64_t count)
{
    return {static_cast<double>(totals.energy), static_cast<double>(totals.sum), static_cast<double>(count)};
}

RowTotals byteRowTotals(RowTriple rows, uint32_t width)
{
    return HWY_DYNAMIC_DISPATCH(ByteRowTotalsImpl)(rows, width);
}

RowTotals wordRowTotals(RowTriple rows, uint32_t width)
{
    return HWY_DYNAMIC_DISPATCH(WordRowTotalsImpl)(rows, width);
}

template <typename Sample>
SharpnessSums measureRows(const SampleRegion& region, RowTotals (*rowTotals)(RowTriple, uint32_t))
{
    const uint64_t measuredWidth = region.width - 2;
    const uint64_t largestSquare = uint64_t{64} * Sample::maximum * Sample::maximum;
    // One row's totals stay within 2^53, so that they neither overflow nor pass the limit alone.
    bool inIntegers = measuredWidth <= exactLimit / largestSquare;
    RowTotals totals;
    uint64_t count = 0;
    SharpnessSums sums;
    for (uint32_t y = 1; y + 1 < region.height; ++y)
    {
        const uint8_t* const row = region.data + size_t{y} * region.stride;
        const RowTriple rows{row - region.stride, row, row + region.stride};
        if (inIntegers)
        {
            const RowTotals next = rowTotals(rows, region.width);
            if (totals.energy + next.energy <= exactLimit && totals.sum + next.sum <= exactLimit &&
                count + measuredWidth <= exactLimit)
            {
                totals.energy += next.energy;
                totals.sum += next.sum;
                count += measuredWidth;
                continue;
            }
            // The double sums so far are exactly the integer totals; they go on pixel by pixel.
            inIntegers = false;
            sums = inDoubles(totals, count);
        }
        addRowInDoubles<Sample>(rows, region.width, sums);
    }
    if (inIntegers)
        sums = inDoubles(totals, count);
    return sums;
}

} // namespace

SharpnessSums measureSharpness(const SampleRegion& region)
{
    if (region.width < 3 || region.height < 3 || region.depth > 16)
        return {};
    if (region.depth <= 8)
        return measureRows<ByteSample>(region, &byteRowTotals);
    return measureRows<WordSample>(region, &wordRowTotals);
}

double sharpnessFigure(SharpnessSums& sums)
{
    sums.sampleSum = std::max(sums.sampleSum, 1.0);
    sums.sampleCount = std::max(sums.sampleCount, 1.0);
    const double s = sums.sampleSum;
    const double n = sums.sampleCount;
    const double a = std::log(s * sums.responseEnergy / n);
    const double b = std::log(s / n);
    return b * (a * 100.0);
}

} // namespace TarvikViewerTessalPackage::Detail
#endif
