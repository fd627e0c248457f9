// Every source type through the library's paths must equal the reference
// converter, byte for byte, for every output, small and odd sizes, padded rows,
// both bit alignments, both edge handlings and both row orders.
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

struct Size
{
    uint32_t width;
    uint32_t height;
};

// Widths beyond the widest vector (64 bytes) reach the vector loops and their tails.
constexpr Size kSizes[] = {{1, 1}, {1, 3}, {2, 1}, {2, 2}, {3, 2}, {5, 1}, {7, 3}, {67, 4}, {131, 2}};

struct Case
{
    EPixelType output;
    Size size;
    size_t sourcePaddingX;
    size_t outputPaddingX;
    bool msbAligned;
    bool extrapolate;
    bool bottomUpSource;
    uint32_t threads;
};

std::string Describe(EPixelType source, const Case& c)
{
    std::ostringstream text;
    text << NameOf(source) << " -> " << NameOf(c.output) << ' ' << c.size.width << 'x' << c.size.height
         << " padding " << c.sourcePaddingX << '/' << c.outputPaddingX << (c.msbAligned ? " msb" : " lsb")
         << (c.extrapolate ? " extrapolate" : " zero-edges") << (c.bottomUpSource ? " bottom-up" : "")
         << " threads " << c.threads;
    return text.str();
}

void ExpectMatchesReference(EPixelType source, const Case& c, uint32_t seed)
{
    SCOPED_TRACE(Describe(source, c));
    const uint32_t width = c.size.width;
    const uint32_t height = c.size.height;
    const std::vector<uint8_t> input =
        RandomBytes(MinimalBytes(source, width, height, c.sourcePaddingX), seed);

    ReferenceConversion::Options options;
    options.output = c.output;
    options.outputPaddingX = c.outputPaddingX;
    options.msbAligned = c.msbAligned;
    options.extrapolateEdges = c.extrapolate;
    options.reverseRows = c.bottomUpSource;
    std::vector<uint8_t> expected =
        ReferenceConversion::Convert(input, source, width, height, c.sourcePaddingX, options);
    expected.resize(MinimalBytes(c.output, width, height, c.outputPaddingX));

    CImageFormatConverter converter;
    converter.OutputPixelFormat = c.output;
    converter.OutputPaddingX = static_cast<int64_t>(c.outputPaddingX);
    converter.OutputBitAlignment =
        c.msbAligned ? OutputBitAlignment_MsbAligned : OutputBitAlignment_LsbAligned;
    converter.InconvertibleEdgeHandling =
        c.extrapolate ? InconvertibleEdgeHandling_Extrapolate : InconvertibleEdgeHandling_SetZero;
    converter.MaxNumThreads = c.threads;
    std::vector<uint8_t> output(expected.size(), options.paddingFill);
    converter.Convert(output.data(), output.size(), input.data(), input.size(), source, width, height,
                      c.sourcePaddingX,
                      c.bottomUpSource ? ImageOrientation_BottomUp : ImageOrientation_TopDown);

    const auto [at, unused] = std::mismatch(output.begin(), output.end(), expected.begin());
    if (at != output.end())
    {
        const auto index = static_cast<size_t>(at - output.begin());
        ADD_FAILURE() << "first difference at byte " << index << ": " << int{output[index]} << ", expected "
                      << int{expected[index]};
    }
}

class ImageFormatConverterReference : public ::testing::TestWithParam<EPixelType>
{
};

} // namespace

TEST_P(ImageFormatConverterReference, EveryOutputMatchesTheReference)
{
    const EPixelType source = GetParam();
    const bool bayer = FindPixelTypeInfo(source)->family == PixelFamily::Bayer;
    uint32_t seed = 1;
    for (const EPixelType output : kOutputs)
    {
        for (const Size& size : kSizes)
        {
            for (const size_t padding : {size_t{0}, size_t{3}})
            {
                for (const bool msb : {false, true})
                {
                    for (const bool extrapolate : {true, false})
                    {
                        if (!extrapolate && !bayer)
                            continue;
                        ExpectMatchesReference(
                            source, {output, size, padding, padding, msb, extrapolate, false, 1}, seed++);
                    }
                }
            }
            ExpectMatchesReference(source, {output, size, 5, 1, true, true, true, 1}, seed++);
        }
    }
}

TEST_P(ImageFormatConverterReference, BandsOnSeveralThreadsMatchTheReference)
{
    ExpectMatchesReference(GetParam(), {PixelType_BGRa8, {75, 301}, 1, 2, false, true, false, 4}, 99);
    ExpectMatchesReference(GetParam(), {PixelType_Mono8, {33, 260}, 0, 0, true, false, true, 3}, 98);
}

std::vector<EPixelType> AllSourceTypes()
{
    std::vector<EPixelType> types;
    for (const PixelTypeInfo& entry : PixelTypeTable())
        types.push_back(entry.type);
    return types;
}

std::string TypeName(const ::testing::TestParamInfo<EPixelType>& type)
{
    return NameOf(type.param);
}

INSTANTIATE_TEST_SUITE_P(AllSourceTypes, ImageFormatConverterReference, ::testing::ValuesIn(AllSourceTypes()),
                         TypeName);

// Converts into a buffer that starts `targetOffset` bytes past an allocation and
// compares with the reference: the row kernels pick their stores by the target's alignment.
void ExpectMatchesReferenceAtTargetOffset(EPixelType source, EPixelType output, uint32_t width,
                                          uint32_t height, size_t targetOffset)
{
    SCOPED_TRACE(NameOf(source) + " " + std::to_string(width) + "x" + std::to_string(height) + " offset " +
                 std::to_string(targetOffset));
    const std::vector<uint8_t> input = RandomBytes(MinimalBytes(source, width, height, 0), 5);
    ReferenceConversion::Options options;
    options.output = output;
    const std::vector<uint8_t> expected =
        ReferenceConversion::Convert(input, source, width, height, 0, options);
    CImageFormatConverter converter;
    converter.OutputPixelFormat = output;
    std::vector<uint8_t> storage(expected.size() + targetOffset);
    converter.Convert(storage.data() + targetOffset, expected.size(), input.data(), input.size(), source,
                      width, height, 0);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), storage.begin() + targetOffset));
}

// Frames too large for the cache are written with streaming stores, which need
// aligned rows: a target that starts off the alignment must come out the same.
TEST(ImageFormatConverterLargeFrames, StreamingStoresMatchTheReferenceAtAnyTargetOffset)
{
    // Source and target of each case together exceed the 24 MiB from which output is streamed.
    ExpectMatchesReferenceAtTargetOffset(PixelType_Mono12, PixelType_Mono8, 4099, 2100, 1);
    for (const size_t offset : {4, 20, 30})
        ExpectMatchesReferenceAtTargetOffset(PixelType_RGB8, PixelType_BGRa8, 2051, 1800, offset);
}

// Frames that fit the cache start their wide stores on a vector boundary of the
// target, with narrower blocks before it: every offset and short rows must match.
TEST(ImageFormatConverterSmallFrames, ColorRowsMatchTheReferenceAtEveryTargetOffset)
{
    for (const EPixelType source : {PixelType_RGB8, PixelType_BGR8})
        for (const uint32_t width : {6u, 11u, 12u, 19u, 20u, 45u, 77u})
            for (size_t offset = 0; offset < 36; ++offset)
                ExpectMatchesReferenceAtTargetOffset(source, PixelType_BGRa8, width, 3, offset);
}

// The row kernels exist once per instruction set; each one the CPU offers, and
// the plain fallback for CPUs without SSSE3, must give the reference's bytes.
TEST(ImageFormatConverterInstructionSets, EveryInstructionSetMatchesTheReference)
{
    const EPixelType fastPathSources[] = {PixelType_Mono8,     PixelType_Mono12,        PixelType_RGB8,
                                          PixelType_BGRa8,     PixelType_YUV422_8_UYVY, PixelType_YUV422_8,
                                          PixelType_BayerRG8,  PixelType_BayerGB8,      PixelType_BayerBG12,
                                          PixelType_BayerGR12p};
    const std::vector<int64_t> sets = instructionSets();
    ASSERT_GE(sets.size(), 2u);
    for (const int64_t target : sets)
    {
        SCOPED_TRACE(hwy::TargetName(target));
        hwy::SetSupportedTargetsForTest(target);
        for (const EPixelType source : fastPathSources)
        {
            for (const EPixelType output : {PixelType_BGRa8, PixelType_Mono8})
            {
                ExpectMatchesReference(source, {output, {131, 3}, 1, 0, false, true, false, 1}, 7);
                ExpectMatchesReference(source, {output, {9, 2}, 0, 0, false, true, false, 1}, 8);
            }
        }
    }
    hwy::SetSupportedTargetsForTest(0);
}
