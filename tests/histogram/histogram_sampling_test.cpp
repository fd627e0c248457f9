#include "failure_text.h"
#include "reference_histogram.h"
#include "sampling_access.h"

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <gtest/gtest.h>

#include <numeric>
#include <string>

using namespace Tarvik::DataProcessing;
using namespace HistogramTest;
using Sampling = TarvikViewerTessalPackage::HistogramSamplingAccess;
using Bins = Sampling::Bins;
using Tarvik::EPixelType;

namespace
{

const char* const outOfRange = "RuntimeException: Internal error in histogram "
                               "sampling. Sample out of range.";

Sampling::ImagePointer makeImage(EPixelType type, const SampleGrid& grid, Packing packing, uint32_t bits,
                                 size_t paddingX)
{
    const std::vector<uint8_t> bytes = encode(grid, packing, bits, paddingX);
    return Sampling::ImagePointer(new Core::Image(bytes.data(), bytes.size(), type, grid.width, grid.height,
                                                  paddingX, paddingX,
                                                  std::make_shared<Core::AlignedBufferProvider>(), nullptr));
}

uint64_t sum(const Bins& bins)
{
    return std::accumulate(bins.begin(), bins.end(), uint64_t{0});
}

struct Geometry
{
    uint32_t width;
    uint32_t height;
    size_t paddingX;
};

// Small and odd sizes, padding of odd length, and one the size of a VGA frame.
const Geometry geometries[] = {{1, 1, 0},  {2, 2, 0},   {7, 5, 3},    {9, 1, 1},
                               {64, 3, 0}, {33, 17, 5}, {640, 480, 7}};

enum class Path
{
    Mono,
    Bayer,
    Color
};

struct DirectFormat
{
    const char* name;
    EPixelType type;
    Path path;
    uint32_t depth;
    Pattern pattern;   // Bayer only
    const char* order; // colour only
};

void PrintTo(const DirectFormat& format, std::ostream* out)
{
    *out << format.name;
}

std::string formatName(const ::testing::TestParamInfo<DirectFormat>& info)
{
    return info.param.name;
}

// Every format that the samplers read without unpacking.
const DirectFormat directFormats[] = {
    {"Mono8", Tarvik::PixelType_Mono8, Path::Mono, 8, Pattern::RG, ""},
    {"Mono10", Tarvik::PixelType_Mono10, Path::Mono, 10, Pattern::RG, ""},
    {"Mono12", Tarvik::PixelType_Mono12, Path::Mono, 12, Pattern::RG, ""},
    {"Mono14", Tarvik::PixelType_Mono14, Path::Mono, 14, Pattern::RG, ""},
    {"Mono16", Tarvik::PixelType_Mono16, Path::Mono, 16, Pattern::RG, ""},
    {"BayerRG8", Tarvik::PixelType_BayerRG8, Path::Bayer, 8, Pattern::RG, ""},
    {"BayerGB8", Tarvik::PixelType_BayerGB8, Path::Bayer, 8, Pattern::GB, ""},
    {"BayerGR8", Tarvik::PixelType_BayerGR8, Path::Bayer, 8, Pattern::GR, ""},
    {"BayerBG8", Tarvik::PixelType_BayerBG8, Path::Bayer, 8, Pattern::BG, ""},
    {"BayerRG10", Tarvik::PixelType_BayerRG10, Path::Bayer, 10, Pattern::RG, ""},
    {"BayerGB10", Tarvik::PixelType_BayerGB10, Path::Bayer, 10, Pattern::GB, ""},
    {"BayerGR10", Tarvik::PixelType_BayerGR10, Path::Bayer, 10, Pattern::GR, ""},
    {"BayerBG10", Tarvik::PixelType_BayerBG10, Path::Bayer, 10, Pattern::BG, ""},
    {"BayerRG12", Tarvik::PixelType_BayerRG12, Path::Bayer, 12, Pattern::RG, ""},
    {"BayerGB12", Tarvik::PixelType_BayerGB12, Path::Bayer, 12, Pattern::GB, ""},
    {"BayerGR12", Tarvik::PixelType_BayerGR12, Path::Bayer, 12, Pattern::GR, ""},
    {"BayerBG12", Tarvik::PixelType_BayerBG12, Path::Bayer, 12, Pattern::BG, ""},
    {"BayerRG16", Tarvik::PixelType_BayerRG16, Path::Bayer, 16, Pattern::RG, ""},
    {"BayerGB16", Tarvik::PixelType_BayerGB16, Path::Bayer, 16, Pattern::GB, ""},
    {"BayerGR16", Tarvik::PixelType_BayerGR16, Path::Bayer, 16, Pattern::GR, ""},
    {"BayerBG16", Tarvik::PixelType_BayerBG16, Path::Bayer, 16, Pattern::BG, ""},
    {"RGB8", Tarvik::PixelType_RGB8, Path::Color, 8, Pattern::RG, "RGB"},
    {"BGR8", Tarvik::PixelType_BGR8, Path::Color, 8, Pattern::RG, "BGR"},
    {"RGB16", Tarvik::PixelType_RGB16, Path::Color, 16, Pattern::RG, "RGB"},
};

// Counts `grid` by the format's sampler and by the reference, and compares.
void expectReferenceCounts(const DirectFormat& format, const SampleGrid& grid, size_t paddingX,
                           bool computeLum = false)
{
    const size_t bins = size_t{1} << format.depth;
    const Packing packing = format.depth <= 8 ? Packing::Bytes : Packing::Words;
    const auto image = makeImage(format.type, grid, packing, format.depth, paddingX);
    Bins red(bins), green(bins), blue(bins), lum(bins);
    switch (format.path)
    {
    case Path::Mono:
        Sampling::sampleMono(image, lum);
        EXPECT_EQ(lum, referenceMono(grid, bins).lum);
        break;
    case Path::Bayer:
    {
        Sampling::sampleBayer(image, red, green, blue, static_cast<int>(format.pattern));
        const Histograms expected = referenceBayer(grid, bins, format.pattern);
        EXPECT_EQ(red, expected.red);
        EXPECT_EQ(green, expected.green);
        EXPECT_EQ(blue, expected.blue);
        EXPECT_EQ(sum(lum), 0u);
        break;
    }
    case Path::Color:
    {
        Sampling::sampleColor(image, red, green, blue, lum, computeLum);
        const Histograms expected = referenceColor(grid, bins, format.order, computeLum);
        EXPECT_EQ(red, expected.red);
        EXPECT_EQ(green, expected.green);
        EXPECT_EQ(blue, expected.blue);
        EXPECT_EQ(lum, expected.lum);
        break;
    }
    }
}

class HistogramSamplingFormats : public ::testing::TestWithParam<DirectFormat>
{
protected:
    uint32_t samplesPerPixel() const { return GetParam().path == Path::Color ? 3 : 1; }

    // Mono samples go beyond the bin count, to be skipped; the others stay below it.
    uint32_t sampleLimit() const
    {
        const uint32_t bins = 1u << GetParam().depth;
        return GetParam().path == Path::Mono && GetParam().depth > 8 ? std::min(2 * bins, 65536u) : bins;
    }
};

TEST_P(HistogramSamplingFormats, RandomSamplesMatchTheReference)
{
    uint32_t seed = 1;
    for (const Geometry& geometry : geometries)
    {
        SCOPED_TRACE(testing::Message()
                     << geometry.width << "x" << geometry.height << "+" << geometry.paddingX);
        // Colour luminance on every other geometry.
        const bool computeLum = seed % 2 == 0;
        expectReferenceCounts(
            GetParam(), randomGrid(geometry.width, geometry.height, samplesPerPixel(), sampleLimit(), seed++),
            geometry.paddingX, computeLum);
    }
}

INSTANTIATE_TEST_SUITE_P(Direct, HistogramSamplingFormats, ::testing::ValuesIn(directFormats), formatName);

SampleGrid gridOf(uint32_t width, uint32_t height, std::vector<uint16_t> samples,
                  uint32_t samplesPerPixel = 1)
{
    return SampleGrid{width, height, samplesPerPixel, std::move(samples)};
}

// Words out of range fail Bayer and colour where they are met; bytes fail after
// counting, into vectors left untouched. Mono skips them either way.
TEST(HistogramSampling, SamplesAtOrAboveTheBinCountFailBayerAndColourButMonoSkipsThem)
{
    Bins lum(4096), red(4096), green(4096), blue(4096);
    Sampling::sampleMono(
        makeImage(Tarvik::PixelType_Mono12, gridOf(2, 2, {5000, 1, 2, 3}), Packing::Words, 12, 0), lum);
    EXPECT_EQ(sum(lum), 3u);
    const auto bayer12 =
        makeImage(Tarvik::PixelType_BayerRG12, gridOf(2, 2, {5000, 1, 2, 3}), Packing::Words, 12, 0);
    EXPECT_EQ(failureOf([&] { Sampling::sampleBayer(bayer12, red, green, blue, 0); }), outOfRange);

    // Colour of depth 10 in 16-bit words: 1024 bins, and a sample of 1024 fails.
    Bins r(1024), g(1024), b(1024), l(1024);
    const auto colour16 =
        makeImage(Tarvik::PixelType_RGB16, gridOf(2, 1, {1, 2, 3, 4, 1024, 5}, 3), Packing::Words, 16, 0);
    EXPECT_EQ(failureOf([&] { Sampling::sampleColor(colour16, r, g, b, l, false); }), outOfRange);

    Bins small(16), smallRed(16), smallGreen(16), smallBlue(16);
    const auto bayer8 = makeImage(Tarvik::PixelType_BayerGR8, gridOf(2, 1, {3, 16}), Packing::Bytes, 8, 0);
    EXPECT_EQ(failureOf([&] { Sampling::sampleBayer(bayer8, smallRed, smallGreen, smallBlue, 2); }),
              outOfRange);
    const auto colour8 = makeImage(Tarvik::PixelType_RGB8, gridOf(1, 1, {0, 17, 0}, 3), Packing::Bytes, 8, 0);
    EXPECT_EQ(
        failureOf([&] { Sampling::sampleColor(colour8, smallRed, smallGreen, smallBlue, small, false); }),
        outOfRange);
    EXPECT_EQ(sum(smallRed) + sum(smallGreen) + sum(smallBlue), 0u);
    Sampling::sampleMono(
        makeImage(Tarvik::PixelType_Mono8, gridOf(3, 1, {15, 16, 255}), Packing::Bytes, 8, 0), small);
    EXPECT_EQ(small[15], 1u);
    EXPECT_EQ(sum(small), 1u);
}

TEST(HistogramSampling, NothingIsCountedForWhatNoSamplerReads)
{
    const auto rgba = makeImage(Tarvik::PixelType_RGBa8, gridOf(2, 2, std::vector<uint16_t>(16, 7), 4),
                                Packing::Bytes, 8, 0);
    Bins red(256), green(256), blue(256), lum(256);
    Sampling::sampleColor(rgba, red, green, blue, lum, true);
    const auto bayer =
        makeImage(Tarvik::PixelType_BayerRG8, gridOf(2, 2, {1, 2, 3, 4}), Packing::Bytes, 8, 0);
    Sampling::sampleBayer(bayer, red, green, blue, 4);
    EXPECT_EQ(sum(red) + sum(green) + sum(blue) + sum(lum), 0u);
}

TEST(HistogramSampling, VectorsOfDifferentLengthAreRefused)
{
    const auto image =
        makeImage(Tarvik::PixelType_BayerRG8, gridOf(2, 2, {1, 2, 3, 4}), Packing::Bytes, 8, 0);
    Bins red(256), green(255), blue(256), lum(256);
    EXPECT_EQ(failureOf([&] { Sampling::sampleBayer(image, red, green, blue, 0); }),
              "InvalidArgumentException: Histogram bin vectors differ in length.");
    EXPECT_EQ(failureOf([&] { Sampling::sampleColor(image, red, green, blue, lum, false); }),
              "InvalidArgumentException: Histogram bin vectors differ in length.");
}

// An image that claims more pixels than its buffer holds.
class ShortImage : public Core::IImage
{
public:
    bool hasError(bool) const override { return false; }
    std::shared_ptr<Core::IError> getError(bool) const override { return nullptr; }
    Tarvik::EPixelType getPixelType() const override { return Tarvik::PixelType_Mono16; }
    uint32_t getWidth() const override { return 8; }
    uint32_t getHeight() const override { return 8; }
    size_t getImageSize() const override { return sizeof m_bytes; }
    Core::ImageDataView<const void> getImageData() const override { return {m_bytes, 0}; }
    Core::ImageDataView<void> getImageData() override { return {m_bytes, 0}; }
    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Utils::TypeInfo::get<Core::IImage>(mustExist);
    }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }

private:
    uint8_t m_bytes[64] = {};
};

TEST(HistogramSampling, ImageSmallerThanItsSizeIsRefusedUnread)
{
    const Sampling::ImagePointer image(new ShortImage());
    Bins lum(65536);
    const std::string failure = failureOf([&] { Sampling::sampleMono(image, lum); });
    EXPECT_EQ(failure.rfind("RuntimeException: Image buffer of 64 bytes is too small", 0), 0u) << failure;
    EXPECT_EQ(sum(lum), 0u);
}

TEST(HistogramSampling, ColorFilterOfEveryBayerCode)
{
    using namespace Tarvik;
    // By filter number: RG, GB, GR, BG.
    const EPixelType byFilter[4][7] = {
        {PixelType_BayerRG8, PixelType_BayerRG10, PixelType_BayerRG12, PixelType_BayerRG16,
         PixelType_BayerRG12Packed, PixelType_BayerRG10p, PixelType_BayerRG12p},
        {PixelType_BayerGB8, PixelType_BayerGB10, PixelType_BayerGB12, PixelType_BayerGB16,
         PixelType_BayerGB12Packed, PixelType_BayerGB10p, PixelType_BayerGB12p},
        {PixelType_BayerGR8, PixelType_BayerGR10, PixelType_BayerGR12, PixelType_BayerGR16,
         PixelType_BayerGR12Packed, PixelType_BayerGR10p, PixelType_BayerGR12p},
        {PixelType_BayerBG8, PixelType_BayerBG10, PixelType_BayerBG12, PixelType_BayerBG16,
         PixelType_BayerBG12Packed, PixelType_BayerBG10p, PixelType_BayerBG12p},
    };
    for (int filter = 0; filter < 4; ++filter)
        for (const EPixelType type : byFilter[filter])
            EXPECT_EQ(Sampling::pixelColorFilter(type), filter) << std::hex << type;
    for (const EPixelType type :
         {PixelType_Mono8, PixelType_RGB8, PixelType_Undefined, static_cast<EPixelType>(0x01080007)})
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
    using namespace Tarvik;
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
