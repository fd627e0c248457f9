// The packed and 16-bit camera formats through every instruction set's row
// kernels must equal the reference converter byte for byte: at every start
// alignment of the source rows, at widths that end mid-group and inside a
// vector's tail, with padded rows, for each output the nodes ask for.
#include "ConversionTestSupport.h"
#include "ReferenceConverter.h"
#include "instruction_sets.h"

#include <TarvikUtility/ImageFormatConverter.h>

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <algorithm>

using namespace Tarvik;
using namespace ConversionTestSupport;

namespace
{

struct Output
{
    EPixelType type;
    bool msbAligned;
};

struct FormatCase
{
    EPixelType source;
    std::vector<Output> outputs;
};

const Output kMono8{PixelType_Mono8, true};
const Output kMono16Lsb{PixelType_Mono16, false};
const Output kMono16Msb{PixelType_Mono16, true};
const Output kBgra8{PixelType_BGRa8, true};

const FormatCase kFormats[] = {
    {PixelType_Mono12p, {kMono8, kMono16Lsb, kMono16Msb}},
    {PixelType_Mono10p, {kMono8, kMono16Lsb, kMono16Msb}},
    {PixelType_Mono12Packed, {kMono8, kMono16Lsb, kMono16Msb}},
    {PixelType_Mono10Packed, {kMono8, kMono16Lsb, kMono16Msb}},
    {PixelType_Mono16, {kMono8}},
    {PixelType_Mono1p, {kMono8, {PixelType_Mono8, false}}},
    {PixelType_Mono2p, {kMono8, {PixelType_Mono8, false}}},
    {PixelType_Mono4p, {kMono8, {PixelType_Mono8, false}}},
    {PixelType_BayerRG12p, {kBgra8}},
    {PixelType_BayerGB10p, {kBgra8}},
    {PixelType_BayerGR12Packed, {kBgra8}},
    {PixelType_BayerBG10, {kBgra8}},
    {PixelType_BayerRG12, {kBgra8}},
    {PixelType_BayerGB16, {kBgra8}},
};

// Widths around the group sizes (2, 4, 8 samples) and the vector widths up to
// 512 bits, including rows too short for any vector.
constexpr uint32_t kWidths[] = {1, 2, 3, 5, 7, 9, 15, 17, 31, 33, 47, 51, 63, 65, 97, 129, 131, 195};

// Converts `source` images whose data start `offset` bytes into an allocation.
void ExpectMatchesReference(EPixelType source, const Output& output, uint32_t width, uint32_t height,
                            size_t paddingX, size_t offset, uint32_t seed)
{
    SCOPED_TRACE(NameOf(source) + " -> " + NameOf(output.type) + (output.msbAligned ? " msb " : " lsb ") +
                 std::to_string(width) + "x" + std::to_string(height) + " padding " +
                 std::to_string(paddingX) + " offset " + std::to_string(offset));
    const size_t bytes = MinimalBytes(source, width, height, paddingX);
    std::vector<uint8_t> storage = RandomBytes(bytes + offset, seed);
    const std::vector<uint8_t> input(storage.begin() + static_cast<std::ptrdiff_t>(offset), storage.end());

    ReferenceConversion::Options options;
    options.output = output.type;
    options.msbAligned = output.msbAligned;
    options.extrapolateEdges = true;
    std::vector<uint8_t> expected =
        ReferenceConversion::Convert(input, source, width, height, paddingX, options);

    CImageFormatConverter converter;
    converter.OutputPixelFormat = output.type;
    converter.OutputBitAlignment =
        output.msbAligned ? OutputBitAlignment_MsbAligned : OutputBitAlignment_LsbAligned;
    converter.InconvertibleEdgeHandling = InconvertibleEdgeHandling_Extrapolate;
    converter.MaxNumThreads = 1;
    std::vector<uint8_t> converted(expected.size());
    converter.Convert(converted.data(), converted.size(), storage.data() + offset, bytes, source, width,
                      height, paddingX);

    const auto [at, unused] = std::mismatch(converted.begin(), converted.end(), expected.begin());
    if (at != converted.end())
    {
        const auto index = static_cast<size_t>(at - converted.begin());
        ADD_FAILURE() << "first difference at byte " << index << ": " << int{converted[index]}
                      << ", expected " << int{expected[index]};
    }
}

class PackedFormatsMatchTheReference : public ::testing::TestWithParam<FormatCase>
{
protected:
    void TearDown() override { hwy::SetSupportedTargetsForTest(0); }
};

} // namespace

// Each of 64 source offsets with a width from the table and a padding that moves
// the later rows to other alignments again.
TEST_P(PackedFormatsMatchTheReference, AtEveryRowStartAlignment)
{
    const FormatCase& format = GetParam();
    const std::vector<int64_t> sets = instructionSets();
    ASSERT_GE(sets.size(), 2u);
    for (const int64_t set : sets)
    {
        SCOPED_TRACE(hwy::TargetName(set));
        hwy::SetSupportedTargetsForTest(set);
        uint32_t seed = 1;
        for (const Output& output : format.outputs)
        {
            for (size_t offset = 0; offset < 64; ++offset)
            {
                const uint32_t width = kWidths[offset % std::size(kWidths)];
                ExpectMatchesReference(format.source, output, width, 3, offset % 7, offset, seed++);
            }
        }
    }
}

std::string FormatName(const ::testing::TestParamInfo<FormatCase>& format)
{
    return NameOf(format.param.source);
}

INSTANTIATE_TEST_SUITE_P(CameraFormats, PackedFormatsMatchTheReference, ::testing::ValuesIn(kFormats),
                         FormatName);

// Frames too large for the cache are written with streaming stores where a
// target row starts on a vector boundary; rows of odd length alternate.
TEST(PackedFormatsLargeFrames, StreamingStoresMatchTheReference)
{
    ExpectMatchesReference(PixelType_Mono12p, kMono16Msb, 4099, 2100, 0, 0, 3);
    ExpectMatchesReference(PixelType_Mono10p, kMono8, 4099, 2800, 1, 0, 4);
    ExpectMatchesReference(PixelType_BayerRG12p, kBgra8, 2051, 2400, 0, 0, 5);
}
