#include "../package/claiming_image.h"
#include "failure_text.h"
#include "reference_histogram.h"
#include "sampling_access.h"

#include <TarvikBase/PixelTypeInfo.h>
#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

using namespace Tarvik;
using namespace Tarvik::DataProcessing;
using namespace HistogramTest;
using Sampling = TarvikViewerTessalPackage::HistogramSamplingAccess;
using Bins = Sampling::Bins;

namespace
{

const char* const outOfRange = "RuntimeException: Internal error in histogram "
                               "sampling. Sample out of range.";

// Samples in bytes up to depth 8, else in 16-bit words.
Sampling::ImagePointer makeImage(EPixelType type, const SampleGrid& grid, size_t paddingX = 0)
{
    const std::vector<uint8_t> bytes =
        encode(grid, BitDepth(type) <= 8 ? Packing::Bytes : Packing::Words, 0, paddingX);
    return Sampling::ImagePointer(new Core::Image(bytes.data(), bytes.size(), type, grid.width, grid.height,
                                                  paddingX, paddingX,
                                                  std::make_shared<Core::AlignedBufferProvider>(), nullptr));
}

SampleGrid gridOf(uint32_t width, uint32_t height, std::vector<uint16_t> samples,
                  uint32_t samplesPerPixel = 1)
{
    return SampleGrid{width, height, samplesPerPixel, std::move(samples)};
}

uint64_t sum(const Bins& bins)
{
    return std::accumulate(bins.begin(), bins.end(), uint64_t{0});
}

// The filter number (RG, GB, GR, BG) that a Bayer name gives by the colours of
// its first row; 4 for any other code.
int filterOf(EPixelType type)
{
    const PixelTypeInfo* const info = FindPixelTypeInfo(type);
    if (info == nullptr || info->family != PixelFamily::Bayer)
        return 4;
    const std::string_view firstRows[] = {"RG", "GB", "GR", "BG"};
    return static_cast<int>(std::ranges::find(firstRows, std::string_view(info->name).substr(5, 2)) -
                            firstRows);
}

// Every format that the samplers read without unpacking.
std::vector<EPixelType> directFormats()
{
    std::vector<EPixelType> formats = {PixelType_RGB8, PixelType_BGR8, PixelType_RGB16};
    for (const PixelTypeInfo& info : PixelTypeTable())
        if (info.packing == PixelPacking::Unpacked &&
            (info.family == PixelFamily::Mono || info.family == PixelFamily::Bayer))
            formats.push_back(info.type);
    return formats;
}

// Counts `grid` by the format's sampler and by the reference, and compares all four channels.
void expectReferenceCounts(EPixelType type, const SampleGrid& grid, size_t paddingX, bool computeLum)
{
    const PixelTypeInfo& format = *FindPixelTypeInfo(type);
    const size_t bins = size_t{1} << format.bitDepth;
    const auto image = makeImage(type, grid, paddingX);
    Histograms counted(bins);
    std::optional<Histograms> expected;
    switch (format.family)
    {
    case PixelFamily::Mono:
        Sampling::sampleMono(image, counted.lum);
        expected = referenceMono(grid, bins);
        break;
    case PixelFamily::Bayer:
        Sampling::sampleBayer(image, counted.red, counted.green, counted.blue, filterOf(type));
        expected = referenceBayer(grid, bins, static_cast<Pattern>(filterOf(type)));
        break;
    default:
        Sampling::sampleColor(image, counted.red, counted.green, counted.blue, counted.lum, computeLum);
        expected = referenceColor(grid, bins, std::string(format.name, 3).c_str(), computeLum);
    }
    EXPECT_EQ(counted.red, expected->red);
    EXPECT_EQ(counted.green, expected->green);
    EXPECT_EQ(counted.blue, expected->blue);
    EXPECT_EQ(counted.lum, expected->lum);
}

class HistogramSamplingFormats : public ::testing::TestWithParam<EPixelType>
{
};

TEST_P(HistogramSamplingFormats, RandomSamplesMatchTheReference)
{
    const PixelTypeInfo& format = *FindPixelTypeInfo(GetParam());
    const uint32_t samplesPerPixel = format.family == PixelFamily::Color ? 3 : 1;
    // Mono samples go beyond the bin count, to be skipped; the others stay below it.
    const uint32_t bins = 1u << format.bitDepth;
    const uint32_t limit =
        format.family == PixelFamily::Mono && format.bitDepth > 8 ? std::min(2 * bins, 65536u) : bins;
    // Small and odd sizes, padding of odd length, and one the size of a VGA frame.
    const struct
    {
        uint32_t width;
        uint32_t height;
        size_t paddingX;
    } geometries[] = {{1, 1, 0}, {2, 2, 0}, {7, 5, 3}, {9, 1, 1}, {64, 3, 0}, {33, 17, 5}, {640, 480, 7}};
    uint32_t seed = 1;
    for (const auto& geometry : geometries)
    {
        SCOPED_TRACE(testing::Message()
                     << geometry.width << "x" << geometry.height << "+" << geometry.paddingX);
        // Colour luminance on every other geometry.
        const bool computeLum = seed % 2 == 0;
        expectReferenceCounts(GetParam(),
                              randomGrid(geometry.width, geometry.height, samplesPerPixel, limit, seed++),
                              geometry.paddingX, computeLum);
    }
}

INSTANTIATE_TEST_SUITE_P(Direct, HistogramSamplingFormats, ::testing::ValuesIn(directFormats()),
                         [](const ::testing::TestParamInfo<EPixelType>& format)
                         { return std::string(FindPixelTypeInfo(format.param)->name); });

// Words out of range fail Bayer and colour where they are met; bytes fail after
// counting, into vectors left untouched. Vectors of different length are refused.
TEST(HistogramSampling, BayerAndColourRefuseSamplesOutOfRangeAndVectorsOfDifferentLength)
{
    const auto bayer12 = makeImage(PixelType_BayerRG12, gridOf(2, 2, {5000, 1, 2, 3}));
    // Colour of depth 10 in 16-bit words: 1024 bins, and a sample of 1024 fails.
    const auto colour16 = makeImage(PixelType_RGB16, gridOf(2, 1, {1, 2, 3, 4, 1024, 5}, 3));
    const auto bayer8 = makeImage(PixelType_BayerGR8, gridOf(2, 1, {3, 16}));
    const auto colour8 = makeImage(PixelType_RGB8, gridOf(1, 1, {0, 17, 0}, 3));
    Histograms wide(4096), depth10(1024), small(16);
    Bins shortGreen(15);
    const std::string lengths = "InvalidArgumentException: Histogram bin vectors differ in length.";
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { Sampling::sampleBayer(bayer12, wide.red, wide.green, wide.blue, 0); }, outOfRange},
        {[&]
         { Sampling::sampleColor(colour16, depth10.red, depth10.green, depth10.blue, depth10.lum, false); },
         outOfRange},
        {[&] { Sampling::sampleBayer(bayer8, small.red, small.green, small.blue, 2); }, outOfRange},
        {[&] { Sampling::sampleColor(colour8, small.red, small.green, small.blue, small.lum, false); },
         outOfRange},
        {[&] { Sampling::sampleBayer(bayer8, small.red, shortGreen, small.blue, 0); }, lengths},
        {[&] { Sampling::sampleColor(colour8, small.red, shortGreen, small.blue, small.lum, false); },
         lengths},
    };
    for (const auto& [action, failure] : cases)
        EXPECT_EQ(failureOf(action), failure);
    EXPECT_EQ(sum(small.red) + sum(small.green) + sum(small.blue) + sum(shortGreen), 0u);
}

// The same samples that fail Bayer and colour are skipped by mono; so is all that no sampler reads.
TEST(HistogramSampling, MonoSkipsSamplesOutOfRangeAndNothingIsCountedForWhatNoSamplerReads)
{
    Histograms wide(4096), small(16), rgba(256);
    Sampling::sampleMono(makeImage(PixelType_Mono12, gridOf(2, 2, {5000, 1, 2, 3})), wide.lum);
    EXPECT_EQ(sum(wide.lum), 3u);
    Sampling::sampleMono(makeImage(PixelType_Mono8, gridOf(3, 1, {15, 16, 255})), small.lum);
    EXPECT_EQ(small.lum[15], 1u);
    EXPECT_EQ(sum(small.lum), 1u);

    Sampling::sampleColor(makeImage(PixelType_RGBa8, gridOf(2, 2, std::vector<uint16_t>(16, 7), 4)), rgba.red,
                          rgba.green, rgba.blue, rgba.lum, true);
    Sampling::sampleBayer(makeImage(PixelType_BayerRG8, gridOf(2, 2, {1, 2, 3, 4})), rgba.red, rgba.green,
                          rgba.blue, 4);
    EXPECT_EQ(sum(rgba.red) + sum(rgba.green) + sum(rgba.blue) + sum(rgba.lum), 0u);
}

TEST(HistogramSampling, ImageSmallerThanItsSizeIsRefusedUnread)
{
    // 8 x 8 Mono16 pixels over 64 bytes.
    const Sampling::ImagePointer image(
        new NodeTestSupport::ClaimingImage(PixelType_Mono16, 8, 8, 0, std::vector<uint8_t>(64)));
    Bins lum(65536);
    const std::string failure = failureOf([&] { Sampling::sampleMono(image, lum); });
    EXPECT_EQ(failure.rfind("RuntimeException: Image buffer of 64 bytes is too small", 0), 0u) << failure;
    EXPECT_EQ(sum(lum), 0u);
}

// Every code of the pixel type table, the undefined one and one beside them.
TEST(HistogramSampling, ColorFilterOfEveryCode)
{
    for (const PixelTypeInfo& info : PixelTypeTable())
        EXPECT_EQ(Sampling::pixelColorFilter(info.type), filterOf(info.type)) << info.name;
    for (const EPixelType type : {PixelType_Undefined, static_cast<EPixelType>(0x01080007)})
        EXPECT_EQ(Sampling::pixelColorFilter(type), 4) << std::hex << type;
}

struct UnpackCase
{
    EPixelType type;
    bool unpack;
    EPixelType source;
    EPixelType target;
};

TEST(HistogramSampling, UnpackTypesByFirstMatchingRow)
{
    const UnpackCase cases[] = {
        {PixelType_Mono1p, true, PixelType_Mono1p, PixelType_Mono8},
        {PixelType_Mono4p, true, PixelType_Mono4p, PixelType_Mono8},
        {PixelType_Mono10Packed, true, PixelType_Mono10Packed, PixelType_Mono16},
        {PixelType_Mono12p, true, PixelType_Mono12p, PixelType_Mono16},
        {PixelType_BayerGR12Packed, true, PixelType_Mono12Packed, PixelType_Mono16},
        {PixelType_BayerBG10p, true, PixelType_Mono10p, PixelType_Mono16},
        {PixelType_BayerGB12p, true, PixelType_Mono12p, PixelType_Mono16},
        {PixelType_Mono12, false, PixelType_Mono12, PixelType_Undefined},
        {PixelType_Undefined, false, PixelType_Undefined, PixelType_Undefined},
    };
    for (const UnpackCase& c : cases)
    {
        EPixelType source = PixelType_Mono8;
        EPixelType target = PixelType_Mono8;
        EXPECT_EQ(Sampling::selectUnpackTypes(c.type, source, target), c.unpack) << std::hex << c.type;
        EXPECT_EQ(source, c.source) << std::hex << c.type;
        EXPECT_EQ(target, c.target) << std::hex << c.type;
    }
}

} // namespace
