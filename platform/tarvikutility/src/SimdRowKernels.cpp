#include "SimdRowKernels.h"

// Highway compiles this file once per instruction set and dispatches at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "SimdRowKernels.cpp"
#include <hwy/foreach_target.h> // IWYU pragma: keep
#include <hwy/highway.h>

#include "BayerDemosaic.h"
#include "RowUnpacker.h"
#include "SampleMath.h"

#include <algorithm>
#include <type_traits>

HWY_BEFORE_NAMESPACE();
namespace Tarvik::Conversion::HWY_NAMESPACE
{
namespace hn = hwy::HWY_NAMESPACE;

inline void StoreBgra(uint8_t* target, uint32_t x, uint32_t red, uint32_t green, uint32_t blue)
{
    target[4 * size_t{x}] = static_cast<uint8_t>(blue);
    target[4 * size_t{x} + 1] = static_cast<uint8_t>(green);
    target[4 * size_t{x} + 2] = static_cast<uint8_t>(red);
    target[4 * size_t{x} + 3] = 255;
}

void Mono8RowToBgra8Impl(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target, uint32_t width)
{
    const hn::ScalableTag<uint8_t> d;
    const size_t lanes = hn::Lanes(d);
    const auto alpha = hn::Set(d, 255);
    size_t x = 0;
    for (; x + lanes <= width; x += lanes)
    {
        const auto grey = hn::LoadU(d, source + x);
        hn::StoreInterleaved4(grey, grey, grey, alpha, d, target + 4 * x);
    }
    for (; x < width; ++x)
    {
        StoreBgra(target, static_cast<uint32_t>(x), source[x], source[x], source[x]);
    }
}

// The vector part of a row; gives the first column it left to the scalar tail.
#if HWY_TARGET != HWY_SCALAR
size_t Mono16RowToMono8Vectors(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target,
                               uint32_t width, uint32_t depth, bool stream)
{
    const hn::ScalableTag<uint16_t> d16;
    const hn::Repartition<uint8_t, decltype(d16)> dBytes;
    const hn::Rebind<int16_t, decltype(d16)> di16;
    const hn::Rebind<uint8_t, decltype(d16)> d8;
    const size_t lanes = hn::Lanes(d16);
    const auto maximum = hn::Set(d16, static_cast<uint16_t>((1u << depth) - 1));
    const int shift = static_cast<int>(depth - 8);
    size_t x = 0;
    const auto convert = [&](size_t at)
    {
        // Loaded as bytes: rows of odd padding leave the words unaligned.
        const auto words = hn::BitCast(d16, hn::LoadU(dBytes, source + 2 * at));
        return hn::DemoteTo(d8, hn::BitCast(di16, hn::ShiftRightSame(hn::Min(words, maximum), shift)));
    };
    if (stream)
    {
        // One ordinary vector, then vectors on their own alignment, as streaming stores need.
        const size_t misaligned = reinterpret_cast<uintptr_t>(target) % lanes;
        if (misaligned != 0 && lanes <= width)
        {
            hn::StoreU(convert(0), d8, target);
            x = lanes - misaligned;
        }
        for (; x + lanes <= width; x += lanes)
        {
            hn::Stream(convert(x), d8, target + x);
        }
    }
    for (; x + lanes <= width; x += lanes)
    {
        hn::StoreU(convert(x), d8, target + x);
    }
    return x;
}
#else
// A single lane cannot be split into bytes: the scalar tail does the whole row.
size_t Mono16RowToMono8Vectors(const uint8_t*, uint8_t*, uint32_t, uint32_t, bool)
{
    return 0;
}
#endif

void Mono16RowToMono8Impl(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target, uint32_t width,
                          uint32_t depth, bool stream)
{
    const auto maximum = static_cast<uint16_t>((1u << depth) - 1);
    const uint32_t shift = depth - 8;
    for (size_t x = Mono16RowToMono8Vectors(source, target, width, depth, stream); x < width; ++x)
    {
        const auto word = static_cast<uint16_t>(source[2 * x] | (source[2 * x + 1] << 8));
        target[x] = static_cast<uint8_t>(std::min(word, maximum) >> shift);
    }
}

#if HWY_TARGET != HWY_SCALAR
// Four pixels per 128-bit block: one byte shuffle spreads 12 source bytes over 16
// target bytes, and alpha is or-ed in. Narrow blocks beat wide interleaving here,
// as a block never has to cross vector halves.
size_t Rgb8RowToBgra8Vectors(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target, uint32_t width,
                             bool blueFirst, bool stream)
{
    const hn::Full128<uint8_t> d;
    const hn::Full128<uint32_t> d32;
    alignas(16) static constexpr uint8_t kFromRgb[16] = {2, 1, 0, 0x80, 5,  4,  3, 0x80,
                                                         8, 7, 6, 0x80, 11, 10, 9, 0x80};
    alignas(16) static constexpr uint8_t kFromBgr[16] = {0, 1, 2, 0x80, 3, 4,  5,  0x80,
                                                         6, 7, 8, 0x80, 9, 10, 11, 0x80};
    const auto shuffle = hn::Load(d, blueFirst ? kFromBgr : kFromRgb);
    const auto alpha = hn::BitCast(d, hn::Set(d32, 0xFF000000u));
    const auto block = [&](size_t x, bool nonTemporal)
    {
        const auto pixels = hn::Or(hn::TableLookupBytesOr0(hn::LoadU(d, source + 3 * x), shuffle), alpha);
        if (nonTemporal)
            hn::Stream(pixels, d, target + 4 * x);
        else
            hn::StoreU(pixels, d, target + 4 * x);
    };
    // A block reads 16 source bytes for its 12: it may start only 6 pixels before the row end.
    // Streaming stores need targets on their own alignment, which pixels of 4
    // bytes reach only from a target on a 4-byte boundary.
    const uintptr_t address = reinterpret_cast<uintptr_t>(target);
    const bool streamable = stream && address % 4 == 0;
    size_t x = 0;
#if HWY_TARGET <= HWY_AVX2
    // Eight pixels per 256-bit vector: loaded from 4 bytes before the pixels, so
    // that each half holds the 12 bytes of its four pixels. Pairs start where the
    // target meets a 32-byte boundary, as a store across two cache lines costs
    // twice; blocks cover the pixels before. A pair starts at pixel 2 at the
    // earliest and reads up to 28 bytes past its first pixel's: it may start only
    // 10 pixels before the row end.
    size_t start = address % 4 == 0 ? (32 - address % 32) % 32 / 4 : 4;
    if (start < 2)
        start += 8;
    if (width >= start + 10)
    {
        const hn::CappedTag<uint8_t, 32> d2;
        const hn::CappedTag<uint32_t, 8> d2x32;
        alignas(32) static constexpr uint8_t kFromRgb2[32] = {
            6, 5, 4, 0x80, 9, 8, 7, 0x80, 12, 11, 10, 0x80, 15, 14, 13, 0x80,
            2, 1, 0, 0x80, 5, 4, 3, 0x80, 8,  7,  6,  0x80, 11, 10, 9,  0x80};
        alignas(32) static constexpr uint8_t kFromBgr2[32] = {
            4, 5, 6, 0x80, 7, 8, 9, 0x80, 10, 11, 12, 0x80, 13, 14, 15, 0x80,
            0, 1, 2, 0x80, 3, 4, 5, 0x80, 6,  7,  8,  0x80, 9,  10, 11, 0x80};
        const auto shuffle2 = hn::Load(d2, blueFirst ? kFromBgr2 : kFromRgb2);
        const auto alpha2 = hn::BitCast(d2, hn::Set(d2x32, 0xFF000000u));
        // One loop for each kind of store, so that neither asks per vector.
        const auto pairs = [&](auto nonTemporal)
        {
            const auto pair = [&](size_t at)
            {
                const auto pixels =
                    hn::Or(hn::TableLookupBytesOr0(hn::LoadU(d2, source + 3 * at - 4), shuffle2), alpha2);
                if constexpr (decltype(nonTemporal)::value)
                    hn::Stream(pixels, d2, target + 4 * at);
                else
                    hn::StoreU(pixels, d2, target + 4 * at);
            };
            for (x = start; x + 34 <= width; x += 32)
            {
                pair(x);
                pair(x + 8);
                pair(x + 16);
                pair(x + 24);
            }
            for (; x + 10 <= width; x += 8)
            {
                pair(x);
            }
        };
        for (size_t head = 0; head < start; head += 4)
        {
            block(head, false);
        }
        if (streamable)
            pairs(std::true_type{});
        else
            pairs(std::false_type{});
    }
#endif
    if (x == 0 && streamable)
    {
        // One ordinary block, then blocks on 16-byte boundaries.
        const size_t misaligned = address % 16 / 4;
        if (misaligned != 0 && width >= 6)
        {
            block(0, false);
            x = 4 - misaligned;
        }
    }
    const bool nonTemporal = streamable && (address + 4 * x) % 16 == 0;
    for (; x + 18 <= width; x += 16)
    {
        block(x, nonTemporal);
        block(x + 4, nonTemporal);
        block(x + 8, nonTemporal);
        block(x + 12, nonTemporal);
    }
    for (; x + 6 <= width; x += 4)
    {
        block(x, nonTemporal);
    }
    return x;
}
#else
// A single lane cannot shuffle bytes: the scalar tail does the whole row.
size_t Rgb8RowToBgra8Vectors(const uint8_t*, uint8_t*, uint32_t, bool, bool)
{
    return 0;
}
#endif

void Rgb8RowToBgra8Impl(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target, uint32_t width,
                        bool blueFirst, bool stream)
{
    for (size_t x = Rgb8RowToBgra8Vectors(source, target, width, blueFirst, stream); x < width; ++x)
    {
        const uint8_t* pixel = source + 3 * x;
        StoreBgra(target, static_cast<uint32_t>(x), blueFirst ? pixel[2] : pixel[0], pixel[1],
                  blueFirst ? pixel[0] : pixel[2]);
    }
}

void Rgba8RowToBgra8Impl(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target, uint32_t width,
                         bool blueFirst)
{
    const hn::ScalableTag<uint8_t> d;
    const size_t lanes = hn::Lanes(d);
    const auto alpha = hn::Set(d, 255);
    size_t x = 0;
    for (; x + lanes <= width; x += lanes)
    {
        hn::Vec<decltype(d)> first, second, third, ignored;
        hn::LoadInterleaved4(d, source + 4 * x, first, second, third, ignored);
        if (blueFirst)
        {
            hn::StoreInterleaved4(first, second, third, alpha, d, target + 4 * x);
        }
        else
        {
            hn::StoreInterleaved4(third, second, first, alpha, d, target + 4 * x);
        }
    }
    for (; x < width; ++x)
    {
        const uint8_t* pixel = source + 4 * x;
        StoreBgra(target, static_cast<uint32_t>(x), blueFirst ? pixel[2] : pixel[0], pixel[1],
                  blueFirst ? pixel[0] : pixel[2]);
    }
}

#if HWY_TARGET != HWY_SCALAR
size_t Yuv422RowToBgra8Vectors(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target,
                               uint32_t width, bool uyvy)
{
    const hn::ScalableTag<uint16_t> d16;
    const hn::Repartition<uint8_t, decltype(d16)> dBytes;
    const hn::Repartition<uint32_t, decltype(d16)> d32;
    const hn::Rebind<int16_t, decltype(d16)> di16;
    const hn::Rebind<uint8_t, decltype(d16)> d8;
    const size_t lanes = hn::Lanes(d16);
    const auto byteMask16 = hn::Set(d16, 0xFF);
    const auto byteMask32 = hn::Set(d32, 0xFF);
    const auto half = hn::Set(di16, 128);
    const auto alpha = hn::Set(d8, 255);
    size_t x = 0;
    // One 16-bit lane per pixel: its Y and one chroma byte; a 32-bit lane per pixel pair.
    for (; x + lanes <= width; x += lanes)
    {
        const auto words = hn::BitCast(d16, hn::LoadU(dBytes, source + 2 * x));
        const auto pairs = hn::BitCast(d32, words);
        const auto luma = hn::BitCast(di16, uyvy ? hn::ShiftRight<8>(words) : hn::And(words, byteMask16));
        const auto u32 = uyvy ? hn::And(pairs, byteMask32) : hn::And(hn::ShiftRight<8>(pairs), byteMask32);
        const auto v32 = uyvy ? hn::And(hn::ShiftRight<16>(pairs), byteMask32) : hn::ShiftRight<24>(pairs);
        const auto u = hn::BitCast(di16, hn::Or(u32, hn::ShiftLeft<16>(u32)));
        const auto v = hn::BitCast(di16, hn::Or(v32, hn::ShiftLeft<16>(v32)));
        const auto dU = hn::Sub(u, half);
        const auto eV = hn::Sub(v, half);
        const auto redOffset = hn::Add(eV, hn::ShiftRight<8>(hn::Add(hn::Mul(eV, hn::Set(di16, 103)), half)));
        const auto greenOffset =
            hn::Sub(hn::ShiftRight<8>(hn::Add(
                        hn::Sub(hn::Mul(eV, hn::Set(di16, 73)), hn::Mul(dU, hn::Set(di16, 88))), half)),
                    eV);
        const auto blueOffset =
            hn::Add(dU, hn::ShiftRight<8>(hn::Add(hn::Mul(dU, hn::Set(di16, 198)), half)));
        hn::StoreInterleaved4(hn::DemoteTo(d8, hn::Add(luma, blueOffset)),
                              hn::DemoteTo(d8, hn::Add(luma, greenOffset)),
                              hn::DemoteTo(d8, hn::Add(luma, redOffset)), alpha, d8, target + 4 * x);
    }
    return x;
}
#else
// A single lane cannot hold a pixel pair: the scalar tail does the whole row.
size_t Yuv422RowToBgra8Vectors(const uint8_t*, uint8_t*, uint32_t, bool)
{
    return 0;
}
#endif

void Yuv422RowToBgra8Impl(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target, uint32_t width,
                          bool uyvy)
{
    const YuvLayout layout = uyvy ? YuvLayout::Uyvy422 : YuvLayout::Yuyv422;
    for (size_t x = Yuv422RowToBgra8Vectors(source, target, width, uyvy); x < width; ++x)
    {
        const YuvSample sample = YuvSampleAt(source, width, layout, static_cast<uint32_t>(x));
        const Rgb8 rgb = YuvToRgb(sample.y, sample.u, sample.v);
        StoreBgra(target, static_cast<uint32_t>(x), rgb.red, rgb.green, rgb.blue);
    }
}

template <class D>
hn::Vec<D> LoadSamples(D d16, const uint8_t* HWY_RESTRICT at)
{
    const hn::Rebind<uint8_t, D> d8;
    return hn::PromoteTo(d16, hn::LoadU(d8, at));
}

template <class D>
hn::Vec<D> LoadSamples(D d16, const uint16_t* HWY_RESTRICT at)
{
    return hn::LoadU(d16, at);
}

// Rounded mean of four samples, (a + b + c + d + 2) >> 2. Samples of up to 14
// bits add up within 16-bit lanes; wider ones are split into their quarters and
// the two low bits, whose sum cannot carry past the lane either.
template <bool kWide, class V>
V MeanOfFour(V a, V b, V c, V d)
{
    const auto two = hn::Set(hn::DFromV<V>(), 2);
    if constexpr (kWide)
    {
        const auto three = hn::Set(hn::DFromV<V>(), 3);
        const auto quarters = hn::Add(hn::Add(hn::ShiftRight<2>(a), hn::ShiftRight<2>(b)),
                                      hn::Add(hn::ShiftRight<2>(c), hn::ShiftRight<2>(d)));
        const auto lowBits = hn::Add(hn::Add(hn::And(a, three), hn::And(b, three)),
                                     hn::Add(hn::And(c, three), hn::And(d, three)));
        return hn::Add(quarters, hn::ShiftRight<2>(hn::Add(lowBits, two)));
    }
    else
    {
        return hn::ShiftRight<2>(hn::Add(hn::Add(hn::Add(a, b), hn::Add(c, d)), two));
    }
}

#if HWY_TARGET != HWY_SCALAR
// The vector part of a row: gives the first column it left to the scalar tail.
// Column 0 mirrors its left neighbour and 1 is done by the caller.
template <bool kWide, typename Sample>
size_t BayerRowToBgra8Vectors(const Sample* HWY_RESTRICT above, const Sample* HWY_RESTRICT row,
                              const Sample* HWY_RESTRICT below, uint8_t* HWY_RESTRICT target, uint32_t width,
                              BayerRowKind kind, uint32_t depth, bool stream)
{
    const hn::ScalableTag<uint16_t> d16;
    const hn::Half<decltype(d16)> dHalf;
    const hn::Repartition<uint32_t, decltype(d16)> d32;
    const hn::Repartition<uint8_t, decltype(d16)> d8;
    const size_t lanes = hn::Lanes(d16);
    const int shift = static_cast<int>(depth - 8);
    const auto load = [&](const Sample* at) { return LoadSamples(d16, at); };
    const auto one = hn::Set(d16, 1);
    const auto alpha = hn::Set(d16, 0xFF00);
    // Which lanes hold red or blue samples, for vectors starting on an even or an odd column.
    const auto columnParity = hn::And(hn::Iota(d16, 0), one);
    const auto colourParity = hn::Set(d16, static_cast<uint16_t>(kind.colourParity));
    const auto colourSiteFromEven = hn::Eq(columnParity, colourParity);
    const auto colourSiteFromOdd = hn::Not(colourSiteFromEven);

    const auto pixels = [&](size_t x, auto nonTemporal)
    {
        const auto centre = load(row + x);
        const auto left = load(row + x - 1);
        const auto right = load(row + x + 1);
        const auto up = load(above + x);
        const auto down = load(below + x);
        // (a + b + 1) >> 1 without a carry out of the lane.
        const auto meanHorizontal = hn::AverageRound(left, right);
        const auto meanVertical = hn::AverageRound(up, down);
        const auto meanCross = MeanOfFour<kWide>(left, right, up, down);
        const auto meanDiagonal = MeanOfFour<kWide>(load(above + x - 1), load(above + x + 1),
                                                    load(below + x - 1), load(below + x + 1));

        const auto colourSite = (x & 1u) == 0 ? colourSiteFromEven : colourSiteFromOdd;
        const auto own = hn::IfThenElse(colourSite, centre, meanHorizontal);
        const auto green = hn::ShiftRightSame(hn::IfThenElse(colourSite, meanCross, centre), shift);
        const auto other = hn::IfThenElse(colourSite, meanDiagonal, meanVertical);
        const auto red = hn::ShiftRightSame(kind.redRow ? own : other, shift);
        const auto blue = hn::ShiftRightSame(kind.redRow ? other : own, shift);
        // Blue and green, red and alpha as 16-bit halves of each pixel's 32 bits,
        // widened half a vector at a time so that the pixels stay in order.
        const auto blueGreen = hn::Or(blue, hn::ShiftLeft<8>(green));
        const auto redAlpha = hn::Or(red, alpha);
        const auto widen = [&](auto low, auto high) {
            return hn::BitCast(d8,
                               hn::Or(hn::PromoteTo(d32, low), hn::ShiftLeft<16>(hn::PromoteTo(d32, high))));
        };
        const auto first = widen(hn::LowerHalf(dHalf, blueGreen), hn::LowerHalf(dHalf, redAlpha));
        const auto second = widen(hn::UpperHalf(dHalf, blueGreen), hn::UpperHalf(dHalf, redAlpha));
        uint8_t* const at = target + 4 * x;
        if constexpr (decltype(nonTemporal)::value)
        {
            hn::Stream(first, d8, at);
            hn::Stream(second, d8, at + 2 * lanes);
        }
        else
        {
            hn::StoreU(first, d8, at);
            hn::StoreU(second, d8, at + 2 * lanes);
        }
    };

    size_t x = 2;
    if (x + lanes + 1 > width)
        return x;
    // Streaming stores need the vector's alignment, which pixels of 4 bytes reach
    // only from a target on a 4-byte boundary: one ordinary vector, then vectors
    // from the first aligned column on.
    const size_t storeBytes = 2 * lanes;
    const uintptr_t address = reinterpret_cast<uintptr_t>(target);
    if (stream && address % 4 == 0)
    {
        pixels(x, std::false_type{});
        const size_t aligned = (storeBytes - (address + 4 * x) % storeBytes) % storeBytes / 4;
        for (x += aligned == 0 ? lanes : aligned; x + lanes + 1 <= width; x += lanes)
            pixels(x, std::true_type{});
        return x;
    }
    for (; x + lanes + 1 <= width; x += lanes)
        pixels(x, std::false_type{});
    return x;
}
#else
// A single lane cannot be widened by halves: the scalar tail does the whole row.
template <bool kWide, typename Sample>
size_t BayerRowToBgra8Vectors(const Sample*, const Sample*, const Sample*, uint8_t*, uint32_t, BayerRowKind,
                              uint32_t, bool)
{
    return 2;
}
#endif

// Bilinear demosaicing of one row of samples of `depth` bits to their top 8 bits.
template <bool kWide, typename Sample>
void BayerRowToBgra8(const Sample* HWY_RESTRICT above, const Sample* HWY_RESTRICT row,
                     const Sample* HWY_RESTRICT below, uint8_t* HWY_RESTRICT target, uint32_t width,
                     BayerRowKind kind, uint32_t depth, bool stream)
{
    const uint32_t shift = depth - 8;
    const auto scalarPixels = [&](uint32_t from, uint32_t to)
    {
        for (uint32_t x = from; x < to; ++x)
        {
            const Rgb16 pixel = DemosaicPixel(above, row, below, width, x, kind);
            StoreBgra(target, x, pixel.red >> shift, pixel.green >> shift, pixel.blue >> shift);
        }
    };
    // Column 0 mirrors its left neighbour; column 1 keeps the vectors on even columns.
    scalarPixels(0, std::min<uint32_t>(2, width));
    const size_t x = BayerRowToBgra8Vectors<kWide>(above, row, below, target, width, kind, depth, stream);
    scalarPixels(static_cast<uint32_t>(x), width);
}

void Bayer8RowToBgra8Impl(const uint8_t* HWY_RESTRICT above, const uint8_t* HWY_RESTRICT row,
                          const uint8_t* HWY_RESTRICT below, uint8_t* HWY_RESTRICT target, uint32_t width,
                          BayerRowKind kind, bool stream)
{
    BayerRowToBgra8<false>(above, row, below, target, width, kind, 8, stream);
}

void Bayer16RowToBgra8Impl(const uint16_t* HWY_RESTRICT above, const uint16_t* HWY_RESTRICT row,
                           const uint16_t* HWY_RESTRICT below, uint8_t* HWY_RESTRICT target, uint32_t width,
                           BayerRowKind kind, uint32_t depth, bool stream)
{
    if (depth > 14)
        BayerRowToBgra8<true>(above, row, below, target, width, kind, depth, stream);
    else
        BayerRowToBgra8<false>(above, row, below, target, width, kind, depth, stream);
}

} // namespace Tarvik::Conversion::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Tarvik::Conversion
{

HWY_EXPORT(Mono8RowToBgra8Impl);
HWY_EXPORT(Mono16RowToMono8Impl);
HWY_EXPORT(Rgb8RowToBgra8Impl);
HWY_EXPORT(Rgba8RowToBgra8Impl);
HWY_EXPORT(Yuv422RowToBgra8Impl);
HWY_EXPORT(Bayer8RowToBgra8Impl);
HWY_EXPORT(Bayer16RowToBgra8Impl);

void Mono8RowToBgra8(const uint8_t* source, uint8_t* target, uint32_t width)
{
    HWY_DYNAMIC_DISPATCH(Mono8RowToBgra8Impl)(source, target, width);
}

void Mono16RowToMono8(const uint8_t* source, uint8_t* target, uint32_t width, uint32_t depth, bool stream)
{
    HWY_DYNAMIC_DISPATCH(Mono16RowToMono8Impl)(source, target, width, depth, stream);
}

void Rgb8RowToBgra8(const uint8_t* source, uint8_t* target, uint32_t width, bool blueFirst, bool stream)
{
    HWY_DYNAMIC_DISPATCH(Rgb8RowToBgra8Impl)(source, target, width, blueFirst, stream);
}

void Rgba8RowToBgra8(const uint8_t* source, uint8_t* target, uint32_t width, bool blueFirst)
{
    HWY_DYNAMIC_DISPATCH(Rgba8RowToBgra8Impl)(source, target, width, blueFirst);
}

void Yuv422RowToBgra8(const uint8_t* source, uint8_t* target, uint32_t width, bool uyvy)
{
    HWY_DYNAMIC_DISPATCH(Yuv422RowToBgra8Impl)(source, target, width, uyvy);
}

void Bayer8RowToBgra8(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* target,
                      uint32_t width, BayerRowKind kind, bool stream)
{
    HWY_DYNAMIC_DISPATCH(Bayer8RowToBgra8Impl)(above, row, below, target, width, kind, stream);
}

void Bayer16RowToBgra8(const uint16_t* above, const uint16_t* row, const uint16_t* below, uint8_t* target,
                       uint32_t width, BayerRowKind kind, uint32_t depth, bool stream)
{
    HWY_DYNAMIC_DISPATCH(Bayer16RowToBgra8Impl)(above, row, below, target, width, kind, depth, stream);
}

} // namespace Tarvik::Conversion
#endif
