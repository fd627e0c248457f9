#include "PackedRowKernels.h"

// Highway compiles this file once per instruction set and dispatches at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "PackedRowKernels.cpp"
#include <hwy/foreach_target.h> // IWYU pragma: keep
#include <hwy/highway.h>

#include "RowUnpacker.h"

#include <algorithm>
#include <array>

#ifndef TARVIK_PACKED_ROW_LAYOUT
#define TARVIK_PACKED_ROW_LAYOUT
namespace Tarvik::Conversion
{

// How eight samples of a packed format lie in the bytes of one 128-bit block.
// Every format here packs eight samples in 10 or 12 bytes; a byte shuffle puts
// the two bytes that hold a sample into its 16-bit lane, and a multiplication
// moves each lane's sample to the top bits of the lane.
struct PackedBlockLayout
{
    uint32_t bytesPerBlock;
    // Low and high byte of each lane's word, in the block's bytes.
    std::array<uint8_t, 16> bytes;
    // 2^n that moves the lane's sample to the top of the word.
    std::array<uint16_t, 8> multipliers;
    // Pairs in three bytes: the high 8 bits come whole from the high byte of the
    // word, the low bits from the middle byte of the pair.
    bool grouped;
};

// Least-significant-bit first: sample k starts at bit 12 k or 10 k.
constexpr PackedBlockLayout kLsb12Block{
    12, {0, 1, 1, 2, 3, 4, 4, 5, 6, 7, 7, 8, 9, 10, 10, 11}, {16, 1, 16, 1, 16, 1, 16, 1}, false};
constexpr PackedBlockLayout kLsb10Block{
    10, {0, 1, 1, 2, 2, 3, 3, 4, 5, 6, 6, 7, 7, 8, 8, 9}, {64, 16, 4, 1, 64, 16, 4, 1}, false};

// High bits of the first and the second sample in the outer bytes, their low
// bits in the low and the high nibble of the middle byte: the word of each lane
// is the middle byte below the sample's outer byte, whose nibble moves to the
// top of the word's low byte.
constexpr PackedBlockLayout GroupedBlock(uint32_t depth)
{
    PackedBlockLayout layout{12, {1, 0, 1, 2, 4, 3, 4, 5, 7, 6, 7, 8, 10, 9, 10, 11}, {}, true};
    for (size_t lane = 0; lane < 8; ++lane)
        layout.multipliers[lane] = static_cast<uint16_t>(1u << ((lane % 2 == 0 ? 8 : 4) - (depth - 8)));
    return layout;
}

// The layout repeated over the four blocks of the widest vector; narrower
// vectors use the first blocks. Block b starts at byte b * bytesPerBlock of the
// vector's bytes: a permutation of 32-bit lanes brings its 4-byte piece to the
// block, the byte shuffle takes the rest of the offset.
struct PackedVectorTables
{
    alignas(64) std::array<uint8_t, 64> bytes;
    alignas(64) std::array<uint32_t, 16> pieces;
    alignas(64) std::array<uint16_t, 32> multipliers;
    uint32_t bytesPerBlock;
    bool grouped;
};

constexpr PackedVectorTables MakeTables(const PackedBlockLayout& layout)
{
    PackedVectorTables tables{};
    for (uint32_t block = 0; block < 4; ++block)
    {
        const uint32_t start = block * layout.bytesPerBlock;
        for (uint32_t i = 0; i < 4; ++i)
            tables.pieces[4 * block + i] = start / 4 + i;
        for (uint32_t i = 0; i < 16; ++i)
            tables.bytes[16 * block + i] = static_cast<uint8_t>(layout.bytes[i] + start % 4);
        for (uint32_t i = 0; i < 8; ++i)
            tables.multipliers[8 * block + i] = layout.multipliers[i];
    }
    tables.bytesPerBlock = layout.bytesPerBlock;
    tables.grouped = layout.grouped;
    return tables;
}

// For 1-bit samples: the source byte of each output lane and the bit it tests,
// over the widest vector.
alignas(64) constexpr std::array<uint8_t, 64> kBitSources = []
{
    std::array<uint8_t, 64> sources{};
    for (size_t i = 0; i < 64; ++i)
        sources[i] = static_cast<uint8_t>(i / 8);
    return sources;
}();
alignas(64) constexpr std::array<uint8_t, 64> kBitMasks = []
{
    std::array<uint8_t, 64> masks{};
    for (size_t i = 0; i < 64; ++i)
        masks[i] = static_cast<uint8_t>(1u << (i % 8));
    return masks;
}();

constexpr PackedVectorTables kLsb12Tables = MakeTables(kLsb12Block);
constexpr PackedVectorTables kLsb10Tables = MakeTables(kLsb10Block);
constexpr PackedVectorTables kGrouped12Tables = MakeTables(GroupedBlock(12));
constexpr PackedVectorTables kGrouped10Tables = MakeTables(GroupedBlock(10));

inline const PackedVectorTables& TablesOf(const SourceFormat& format)
{
    if (format.packing == PixelPacking::LsbStream)
        return format.depth == 12 ? kLsb12Tables : kLsb10Tables;
    return format.depth == 12 ? kGrouped12Tables : kGrouped10Tables;
}

} // namespace Tarvik::Conversion
#endif

HWY_BEFORE_NAMESPACE();
namespace Tarvik::Conversion::HWY_NAMESPACE
{
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR
// Unpacks the row block by block into words that hold each sample in their top
// `depth` bits, zero below, and hands each vector to `emit` with the first
// sample's column. Gives the first column it left to the scalar tail, the start
// of a group. Reads whole vectors only where they end inside the row's bytes.
template <class Emit>
size_t UnpackMsbVectors(const uint8_t* HWY_RESTRICT source, uint32_t width, const SourceFormat& format,
                        Emit&& emit)
{
    const hn::ScalableTag<uint16_t> d16;
    const hn::Repartition<uint8_t, decltype(d16)> d8;
    const hn::Repartition<uint32_t, decltype(d16)> d32;
    const size_t samples = hn::Lanes(d16);
    const PackedVectorTables& tables = TablesOf(format);
    const auto pieces = hn::SetTableIndices(d32, tables.pieces.data());
    const auto shuffle = hn::Load(d8, tables.bytes.data());
    const auto multipliers = hn::Load(d16, tables.multipliers.data());
    const int lowBits = static_cast<int>(16 - format.depth);
    const auto sampleMask = hn::Set(d16, static_cast<uint16_t>(0xFFFFu << lowBits));
    const auto highByte = hn::Set(d16, 0xFF00);
    const uint32_t middleBitCount = format.depth - 8;
    const auto middleBits =
        hn::Set(d16, static_cast<uint16_t>(((1u << middleBitCount) - 1) << (8 - middleBitCount)));

    const size_t rowBytes = (size_t{width} * format.bitsPerPixel + 7) / 8;
    const size_t bytesPerVector = samples / 8 * tables.bytesPerBlock;
    size_t x = 0;
    for (size_t at = 0; x + samples <= width && at + hn::Lanes(d8) <= rowBytes;
         x += samples, at += bytesPerVector)
    {
        const auto loaded = hn::BitCast(d32, hn::LoadU(d8, source + at));
        const auto words = hn::BitCast(
            d16, hn::TableLookupBytes(hn::BitCast(d8, hn::TableLookupLanes(loaded, pieces)), shuffle));
        const auto moved = hn::Mul(words, multipliers);
        emit(x, tables.grouped ? hn::Or(hn::And(words, highByte), hn::And(moved, middleBits))
                               : hn::And(moved, sampleMask));
    }
    return x;
}
#else
// A single lane cannot shuffle bytes: the scalar tail does the whole row.
template <class Emit>
size_t UnpackMsbVectors(const uint8_t*, uint32_t, const SourceFormat&, Emit&&)
{
    return 0;
}
#endif

// Stores full vectors with non-temporal stores when asked and the target row
// starts on the store's alignment, which every later store then keeps.
template <class D>
bool StreamableRow(D d, const uint8_t* target, bool stream)
{
    return stream && reinterpret_cast<uintptr_t>(target) % (hn::Lanes(d) * sizeof(hn::TFromD<D>)) == 0;
}

template <class D, class V>
void StoreRowVector(D d, V v, uint8_t* HWY_RESTRICT at, bool nonTemporal)
{
    if (nonTemporal)
        hn::Stream(v, d, at);
    else
        hn::StoreU(v, d, at);
}

// The samples from column x to the row end, through the scalar unpacker; x is
// the start of a group.
template <class Store>
void ScalarTail(const uint8_t* HWY_RESTRICT source, uint32_t width, const SourceFormat& format, size_t x,
                Store&& store)
{
    constexpr size_t kChunk = 64;
    uint16_t samples[kChunk];
    for (; x < width; x += kChunk)
    {
        const auto count = static_cast<uint32_t>(std::min<size_t>(kChunk, width - x));
        UnpackPackedSamples(source + x * format.bitsPerPixel / 8, count, format, samples);
        for (uint32_t i = 0; i < count; ++i)
            store(x + i, samples[i]);
    }
}

void PackedRowToWordsImpl(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target, uint32_t width,
                          const SourceFormat& format, bool msbAligned, bool stream)
{
    const hn::ScalableTag<uint16_t> d16;
    const hn::Repartition<uint8_t, decltype(d16)> d8;
    const int shift = msbAligned ? 0 : static_cast<int>(16 - format.depth);
    const bool nonTemporal = StreamableRow(d8, target, stream);
    const size_t x =
        UnpackMsbVectors(source, width, format,
                         [&](size_t at, auto words) {
                             StoreRowVector(d8, hn::BitCast(d8, hn::ShiftRightSame(words, shift)),
                                            target + 2 * at, nonTemporal);
                         });
    const uint32_t leftShift = msbAligned ? 16 - format.depth : 0;
    ScalarTail(source, width, format, x,
               [&](size_t at, uint16_t sample)
               {
                   const uint32_t word = uint32_t{sample} << leftShift;
                   target[2 * at] = static_cast<uint8_t>(word);
                   target[2 * at + 1] = static_cast<uint8_t>(word >> 8);
               });
}

void PackedRowToMono8Impl(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target, uint32_t width,
                          const SourceFormat& format, bool stream)
{
    const hn::ScalableTag<uint16_t> d16;
    const hn::Rebind<int16_t, decltype(d16)> di16;
    const hn::Rebind<uint8_t, decltype(d16)> d8;
    const bool nonTemporal = StreamableRow(d8, target, stream);
    const size_t x =
        UnpackMsbVectors(source, width, format,
                         [&](size_t at, auto words)
                         {
                             StoreRowVector(d8, hn::DemoteTo(d8, hn::BitCast(di16, hn::ShiftRight<8>(words))),
                                            target + at, nonTemporal);
                         });
    const uint32_t shift = format.depth - 8;
    ScalarTail(source, width, format, x,
               [&](size_t at, uint16_t sample) { target[at] = static_cast<uint8_t>(sample >> shift); });
}

#if HWY_TARGET != HWY_SCALAR
// Rows of 1-, 2- or 4-bit samples, least significant bits first, to one byte per
// sample from column x on: the plain value, or moved to the top bits. Gives the
// first column it left.
template <class D>
size_t PackedBitsVectors(D d, const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target,
                         uint32_t width, uint32_t depth, bool msbAligned, size_t x)
{
    const size_t lanes = hn::Lanes(d);
    const size_t rowBytes = (size_t{width} * depth + 7) / 8;
    const int toTop = msbAligned ? static_cast<int>(8 - depth) : 0;
    const auto mask = hn::Set(d, static_cast<uint8_t>((1u << depth) - 1));
    const auto sample = [&](auto bytes, int shift)
    { return hn::ShiftLeftSame(hn::And(hn::ShiftRightSame(bytes, shift), mask), toTop); };
    if (depth == 4)
    {
        for (; x + 2 * lanes <= width; x += 2 * lanes)
        {
            const auto bytes = hn::LoadU(d, source + x / 2);
            hn::StoreInterleaved2(sample(bytes, 0), sample(bytes, 4), d, target + x);
        }
        return x;
    }
    if (depth == 2)
    {
        for (; x + 4 * lanes <= width; x += 4 * lanes)
        {
            const auto bytes = hn::LoadU(d, source + x / 4);
            hn::StoreInterleaved4(sample(bytes, 0), sample(bytes, 2), sample(bytes, 4), sample(bytes, 6), d,
                                  target + x);
        }
        return x;
    }
    // One bit per sample: every 128-bit block of output takes two source bytes,
    // repeats each over eight lanes and tests one bit in each. Single blocks
    // read just their two bytes, so that they reach the end of the row.
    const auto spread = hn::Load(d, kBitSources.data());
    const auto bits = hn::Load(d, kBitMasks.data());
    const auto one = hn::Set(d, static_cast<uint8_t>(1u << toTop));
    const hn::Repartition<uint16_t, D> dPairs;
    for (; x + lanes <= width && (lanes == 16 || x / 8 + 16 <= rowBytes); x += lanes)
    {
        const uint8_t* const at = source + x / 8;
        const auto loaded = lanes == 16
                                ? hn::BitCast(d, hn::Set(dPairs, static_cast<uint16_t>(at[0] | (at[1] << 8))))
                                : hn::LoadDup128(d, at);
        const auto bytes = hn::TableLookupBytes(loaded, spread);
        hn::StoreU(hn::IfThenElseZero(hn::TestBit(bytes, bits), one), d, target + x);
    }
    return x;
}

// Whole vectors, then single blocks for the rest of the row.
size_t PackedBitsRowToMono8Vectors(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target,
                                   uint32_t width, uint32_t depth, bool msbAligned)
{
    const size_t x =
        PackedBitsVectors(hn::ScalableTag<uint8_t>(), source, target, width, depth, msbAligned, 0);
    return PackedBitsVectors(hn::Full128<uint8_t>(), source, target, width, depth, msbAligned, x);
}
#else
// A single lane cannot split bytes: the scalar tail does the whole row.
size_t PackedBitsRowToMono8Vectors(const uint8_t*, uint8_t*, uint32_t, uint32_t, bool)
{
    return 0;
}
#endif

void PackedBitsRowToMono8Impl(const uint8_t* HWY_RESTRICT source, uint8_t* HWY_RESTRICT target,
                              uint32_t width, const SourceFormat& format, bool msbAligned)
{
    const size_t x = PackedBitsRowToMono8Vectors(source, target, width, format.depth, msbAligned);
    const uint32_t toTop = msbAligned ? 8 - format.depth : 0;
    ScalarTail(source, width, format, x,
               [&](size_t at, uint16_t sample) { target[at] = static_cast<uint8_t>(sample << toTop); });
}

void ClampedWordsRowImpl(const uint8_t* HWY_RESTRICT source, uint16_t* HWY_RESTRICT target, uint32_t width,
                         uint32_t depth)
{
    const auto maximum = static_cast<uint16_t>((1u << depth) - 1);
    size_t x = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<uint16_t> d16;
    const hn::Repartition<uint8_t, decltype(d16)> d8;
    const auto maximumVector = hn::Set(d16, maximum);
    const size_t lanes = hn::Lanes(d16);
    // Loaded as bytes: rows of odd padding leave the words unaligned.
    for (; x + lanes <= width; x += lanes)
    {
        hn::StoreU(hn::Min(hn::BitCast(d16, hn::LoadU(d8, source + 2 * x)), maximumVector), d16, target + x);
    }
#endif
    for (; x < width; ++x)
    {
        target[x] = std::min(static_cast<uint16_t>(source[2 * x] | (source[2 * x + 1] << 8)), maximum);
    }
}

} // namespace Tarvik::Conversion::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Tarvik::Conversion
{

HWY_EXPORT(PackedRowToWordsImpl);
HWY_EXPORT(PackedRowToMono8Impl);
HWY_EXPORT(PackedBitsRowToMono8Impl);
HWY_EXPORT(ClampedWordsRowImpl);

bool HasPackedRowKernel(const SourceFormat& format)
{
    const bool layout =
        format.packing == PixelPacking::LsbStream || format.packing == PixelPacking::GroupedMsb;
    return layout && format.storedChannels == 1 && (format.depth == 10 || format.depth == 12);
}

void PackedRowToWords(const uint8_t* source, uint8_t* target, uint32_t width, const SourceFormat& format,
                      bool msbAligned, bool stream)
{
    HWY_DYNAMIC_DISPATCH(PackedRowToWordsImpl)(source, target, width, format, msbAligned, stream);
}

void PackedRowToMono8(const uint8_t* source, uint8_t* target, uint32_t width, const SourceFormat& format,
                      bool stream)
{
    HWY_DYNAMIC_DISPATCH(PackedRowToMono8Impl)(source, target, width, format, stream);
}

void PackedBitsRowToMono8(const uint8_t* source, uint8_t* target, uint32_t width, const SourceFormat& format,
                          bool msbAligned)
{
    HWY_DYNAMIC_DISPATCH(PackedBitsRowToMono8Impl)(source, target, width, format, msbAligned);
}

void ClampedWordsRow(const uint8_t* source, uint16_t* target, uint32_t width, uint32_t depth)
{
    HWY_DYNAMIC_DISPATCH(ClampedWordsRowImpl)(source, target, width, depth);
}

} // namespace Tarvik::Conversion
#endif
