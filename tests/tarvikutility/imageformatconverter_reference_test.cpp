// Every source type through the library's paths must equal the reference
// converter, byte for byte: for every output, small and odd sizes, padded rows,
// both bit alignments, both edge handlings and both row orders; through every
// instruction set's row kernels at every start alignment of source and target;
// and for frames large enough to be written with streaming stores.
#include "ConversionTestSupport.h"
#include "ReferenceConverter.h"
#include "instruction_sets.h"

#include <TarvikBase/PixelTypeInfo.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <algorithm>
#include <sstream>

using namespace Tarvik;
using namespace ConversionTestSupport;

namespace
{

constexpr EPixelType kOutputs[] = {PixelType_Mono8, PixelType_Mono16, PixelType_RGB8, PixelType_RGB16,
                                   PixelType_BGRa8};

struct Case
{
    EPixelType output;
    uint32_t width;
    uint32_t height;
    size_t sourcePaddingX = 0;
    size_t outputPaddingX = 0;
    bool msbAligned = false;
    bool extrapolate = true;
    bool bottomUpSource = false;
    bool bottomUpOutput = false;
    uint32_t threads = 1;
    // Where source and target start in their allocations: the row kernels pick
    // their loads and stores by alignment.
    size_t sourceOffset = 0;
    size_t targetOffset = 0;
};

std::string Describe(EPixelType source, const Case& c)
{
    std::ostringstream text;
    text << NameOf(source) << " -> " << NameOf(c.output) << ' ' << c.width << 'x' << c.height << " padding "
         << c.sourcePaddingX << '/' << c.outputPaddingX << (c.msbAligned ? " msb" : " lsb")
         << (c.extrapolate ? " extrapolate" : " zero-edges") << (c.bottomUpSource ? " bottom-up" : "")
         << (c.bottomUpOutput ? " to bottom-up" : "") << " threads " << c.threads << " offsets "
         << c.sourceOffset << '/' << c.targetOffset;
    return text.str();
}

ReferenceConversion::Options OptionsOf(const Case& c)
{
    return {.output = c.output,
            .outputPaddingX = c.outputPaddingX,
            .msbAligned = c.msbAligned,
            .extrapolateEdges = c.extrapolate,
            .reverseRows = c.bottomUpSource != c.bottomUpOutput};
}

// The library's result for a source that starts `c.sourceOffset` bytes into `storage`.
std::vector<uint8_t> ConvertWithLibrary(const std::vector<uint8_t>& storage, EPixelType source, const Case& c)
{
    const size_t targetBytes = MinimalBytes(c.output, c.width, c.height, c.outputPaddingX);
    CImageFormatConverter converter;
    converter.OutputPixelFormat = c.output;
    converter.OutputPaddingX = static_cast<int64_t>(c.outputPaddingX);
    converter.OutputBitAlignment =
        c.msbAligned ? OutputBitAlignment_MsbAligned : OutputBitAlignment_LsbAligned;
    converter.InconvertibleEdgeHandling =
        c.extrapolate ? InconvertibleEdgeHandling_Extrapolate : InconvertibleEdgeHandling_SetZero;
    converter.OutputOrientation = c.bottomUpOutput ? ImageOrientation_BottomUp : ImageOrientation_TopDown;
    converter.MaxNumThreads = c.threads;
    std::vector<uint8_t> target(targetBytes + c.targetOffset, OptionsOf(c).paddingFill);
    converter.Convert(target.data() + c.targetOffset, targetBytes, storage.data() + c.sourceOffset,
                      storage.size() - c.sourceOffset, source, c.width, c.height, c.sourcePaddingX,
                      c.bottomUpSource ? ImageOrientation_BottomUp : ImageOrientation_TopDown);
    return {target.begin() + static_cast<std::ptrdiff_t>(c.targetOffset), target.end()};
}

void ExpectMatchesReference(EPixelType source, const Case& c, uint32_t seed)
{
    SCOPED_TRACE(Describe(source, c));
    const std::vector<uint8_t> storage =
        RandomBytes(MinimalBytes(source, c.width, c.height, c.sourcePaddingX) + c.sourceOffset, seed);
    const std::vector<uint8_t> input(storage.begin() + static_cast<std::ptrdiff_t>(c.sourceOffset),
                                     storage.end());
    std::vector<uint8_t> expected =
        ReferenceConversion::Convert(input, source, c.width, c.height, c.sourcePaddingX, OptionsOf(c));
    expected.resize(MinimalBytes(c.output, c.width, c.height, c.outputPaddingX));
    const std::vector<uint8_t> target = ConvertWithLibrary(storage, source, c);
    const auto [at, unused] = std::mismatch(expected.begin(), expected.end(), target.begin());
    if (at != expected.end())
    {
        const auto index = static_cast<size_t>(at - expected.begin());
        ADD_FAILURE() << "first difference at byte " << index << ": " << int{target[index]} << ", expected "
                      << int{expected[index]};
    }
}

class ImageFormatConverterReference : public ::testing::TestWithParam<PixelTypeInfo>
{
};

} // namespace

TEST_P(ImageFormatConverterReference, EveryOutputMatchesTheReference)
{
    // Widths beyond the widest vector (64 bytes) reach the vector loops and their tails.
    constexpr std::pair<uint32_t, uint32_t> kSizes[] = {{1, 1}, {1, 3}, {2, 1},  {2, 2},  {3, 2},
                                                        {5, 1}, {7, 3}, {67, 4}, {131, 2}};
    const EPixelType source = GetParam().type;
    const bool bayer = GetParam().family == PixelFamily::Bayer;
    uint32_t seed = 1;
    for (const EPixelType output : kOutputs)
    {
        for (const auto& [width, height] : kSizes)
        {
            for (const size_t padding : {size_t{0}, size_t{3}})
                for (const bool msb : {false, true})
                    for (const bool extrapolate : {true, false})
                        if (extrapolate || bayer)
                            ExpectMatchesReference(
                                source, {output, width, height, padding, padding, msb, extrapolate}, seed++);
            ExpectMatchesReference(source, {output, width, height, 5, 1, true, true, true}, seed++);
            for (const bool bottomUpSource : {false, true})
                ExpectMatchesReference(
                    source, {output, width, height, 0, 2, false, true, bottomUpSource, true}, seed++);
        }
    }
}

TEST_P(ImageFormatConverterReference, BandsOnSeveralThreadsMatchTheReference)
{
    ExpectMatchesReference(GetParam().type, {PixelType_BGRa8, 75, 301, 1, 2, false, true, false, false, 4},
                           99);
    ExpectMatchesReference(GetParam().type, {PixelType_Mono8, 33, 260, 0, 0, true, false, true, true, 3}, 98);
}

INSTANTIATE_TEST_SUITE_P(AllSourceTypes, ImageFormatConverterReference, ::testing::ValuesIn(PixelTypeTable()),
                         [](const auto& entry) { return std::string(entry.param.name); });

namespace
{

struct Output
{
    EPixelType type;
    bool msbAligned;
};

using Outputs = std::vector<Output>;
const Outputs kMonoDepths{{PixelType_Mono8, true}, {PixelType_Mono16, false}, {PixelType_Mono16, true}};
const Outputs kMono8Both{{PixelType_Mono8, true}, {PixelType_Mono8, false}};
const Outputs kBgraAndMono{{PixelType_BGRa8, true}, {PixelType_Mono8, true}};
const Outputs kMono{{PixelType_Mono8, true}};
const Outputs kBgra{{PixelType_BGRa8, true}};

// The formats the row kernels have vector paths for, by the outputs the nodes ask of them.
const std::pair<Outputs, std::vector<EPixelType>> kKernelFormats[] = {
    {kMonoDepths, {PixelType_Mono12p, PixelType_Mono10p, PixelType_Mono12Packed, PixelType_Mono10Packed}},
    {kMono8Both, {PixelType_Mono1p, PixelType_Mono2p, PixelType_Mono4p}},
    {kBgraAndMono,
     {PixelType_Mono8, PixelType_Mono12, PixelType_RGB8, PixelType_BGRa8, PixelType_YUV422_8_UYVY,
      PixelType_YUV422_8, PixelType_BayerRG8, PixelType_BayerGB8, PixelType_BayerBG12, PixelType_BayerGR12p}},
    {kMono, {PixelType_Mono16}},
    {kBgra,
     {PixelType_BayerRG12p, PixelType_BayerGB10p, PixelType_BayerGR12Packed, PixelType_BayerBG10,
      PixelType_BayerRG12, PixelType_BayerGB16}},
};

class RowKernelsMatchTheReference : public ::testing::TestWithParam<std::pair<EPixelType, Outputs>>
{
protected:
    void TearDown() override { hwy::SetSupportedTargetsForTest(0); }
};

} // namespace

// Each instruction set the CPU offers, and the plain fallback, at each of 64
// source offsets with widths around the group sizes (2, 4, 8 samples) and the
// vector widths up to 512 bits, and a padding that moves the later rows to
// other alignments again.
TEST_P(RowKernelsMatchTheReference, InEveryInstructionSetAtEveryRowStartAlignment)
{
    constexpr uint32_t kWidths[] = {1, 2, 3, 5, 7, 9, 15, 17, 31, 33, 47, 51, 63, 65, 97, 129, 131, 195};
    const auto& [source, outputs] = GetParam();
    const std::vector<int64_t> sets = instructionSets();
    ASSERT_GE(sets.size(), 2u);
    for (const int64_t set : sets)
    {
        SCOPED_TRACE(hwy::TargetName(set));
        hwy::SetSupportedTargetsForTest(set);
        uint32_t seed = 1;
        for (const Output& output : outputs)
        {
            for (size_t offset = 0; offset < 64; ++offset)
            {
                Case c{output.type, kWidths[offset % std::size(kWidths)], 3, offset % 7};
                c.msbAligned = output.msbAligned;
                c.sourceOffset = offset;
                ExpectMatchesReference(source, c, seed++);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(CameraFormats, RowKernelsMatchTheReference,
                         ::testing::ValuesIn(
                             []
                             {
                                 std::vector<std::pair<EPixelType, Outputs>> formats;
                                 for (const auto& [outputs, sources] : kKernelFormats)
                                     for (const EPixelType source : sources)
                                         formats.emplace_back(source, outputs);
                                 return formats;
                             }()),
                         [](const auto& format) { return NameOf(format.param.first); });

// Frames too large for the cache are written with streaming stores where a
// target row starts on a vector boundary: odd row lengths and targets off the
// alignment must come out the same. Source and target of each case together
// exceed the 24 MiB from which output is streamed. The reference converts strips
// of four rows from even rows on, so that Bayer phases hold; the middle two rows
// of a strip have their true neighbours.
TEST(ImageFormatConverterLargeFrames, StreamingStoresMatchTheReference)
{
    const std::pair<EPixelType, Case> cases[] = {
        {PixelType_Mono12p, {PixelType_Mono16, 4099, 2100, 0, 0, true}},
        {PixelType_Mono10p, {PixelType_Mono8, 4099, 2800, 1, 0, true}},
        {PixelType_BayerRG12p, {PixelType_BGRa8, 2051, 2400, 0, 0, true}},
        {PixelType_Mono12, {.output = PixelType_Mono8, .width = 4099, .height = 2100, .targetOffset = 1}},
        {PixelType_RGB8, {.output = PixelType_BGRa8, .width = 2051, .height = 1800, .targetOffset = 4}},
        {PixelType_RGB8, {.output = PixelType_BGRa8, .width = 2051, .height = 1800, .targetOffset = 20}},
        {PixelType_RGB8, {.output = PixelType_BGRa8, .width = 2051, .height = 1800, .targetOffset = 30}},
    };
    for (const auto& [source, c] : cases)
    {
        SCOPED_TRACE(Describe(source, c));
        const std::vector<uint8_t> storage =
            RandomBytes(MinimalBytes(source, c.width, c.height, c.sourcePaddingX), 3);
        const std::vector<uint8_t> target = ConvertWithLibrary(storage, source, c);
        const size_t sourceStride = ComputeBufferSize(source, c.width, 1, c.sourcePaddingX);
        const size_t targetStride = ComputeBufferSize(c.output, c.width, 1, c.outputPaddingX);
        for (const size_t first : {size_t{0}, size_t{c.height / 2 & ~1u}, size_t{c.height - 4}})
        {
            const auto begin = storage.begin() + static_cast<std::ptrdiff_t>(first * sourceStride);
            const std::vector<uint8_t> strip(begin, begin + static_cast<std::ptrdiff_t>(MinimalBytes(
                                                                source, c.width, 4, c.sourcePaddingX)));
            const std::vector<uint8_t> expected =
                ReferenceConversion::Convert(strip, source, c.width, 4, c.sourcePaddingX, OptionsOf(c));
            EXPECT_TRUE(std::equal(expected.begin() + static_cast<std::ptrdiff_t>(targetStride),
                                   expected.begin() + static_cast<std::ptrdiff_t>(3 * targetStride),
                                   target.begin() + static_cast<std::ptrdiff_t>((first + 1) * targetStride)))
                << "rows " << first + 1 << " and " << first + 2;
        }
    }
}

// Frames that fit the cache start their wide stores on a vector boundary of the
// target, with narrower blocks before it: every offset and short rows must match.
TEST(ImageFormatConverterSmallFrames, ColorRowsMatchTheReferenceAtEveryTargetOffset)
{
    for (const EPixelType source : {PixelType_RGB8, PixelType_BGR8})
        for (const uint32_t width : {6u, 11u, 12u, 19u, 20u, 45u, 77u})
            for (size_t offset = 0; offset < 36; ++offset)
                ExpectMatchesReference(
                    source, {.output = PixelType_BGRa8, .width = width, .height = 3, .targetOffset = offset},
                    5);
}
