#include "node_test_support.h"
#include "reference_sharpness.h"

#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <TarvikUtility/ImageFormatConverter.h>

#include <GenApi/GenApi.h>

#include <cmath>
#include <limits>

using namespace NodeTestSupport;
using namespace HistogramTest;
using namespace SharpnessTest;
using Tarvik::EPixelType;

namespace
{

const std::string prefix = "Could not extract sharpness data. Reason: ";
constexpr int64_t largest = std::numeric_limits<int64_t>::max();

class SharpnessExtractorTest : public ::testing::Test
{
protected:
    TestedNode sharpness{"SharpnessExtractor"};

    double figure(EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                  std::vector<uint8_t> bytes)
    {
        const auto outputs = sharpness.run({{"Image", imageVariant(type, width, height, paddingX, bytes)}});
        EXPECT_EQ(outputs.size(), 1u);
        const auto value = outputs.at("Sharpness").get<Utils::COWPtr<Core::IFloat>>(true);
        EXPECT_FALSE(value->hasError(true)) << value->getError(true)->getDescription();
        return value->getValue();
    }
};

// NaN where the reference gives NaN, the very same double everywhere else.
void expectSameFigure(double actual, double expected)
{
    if (std::isnan(expected))
        EXPECT_TRUE(std::isnan(actual)) << actual;
    else
        EXPECT_EQ(actual, expected);
}

// An AOI without width or height is not set yet: no output and no log line.
TEST_F(SharpnessExtractorTest, RefusedAoisFailWithOneLogLine)
{
    const Utils::Variant image =
        imageVariant(Tarvik::PixelType_Mono8, 100, 100, 0, std::vector<uint8_t>(10000));
    const std::string notValid = "AOI is not valid.";
    const std::string outside = "AOI is not in image boundaries.";
    const std::pair<Aoi, std::string> cases[] = {
        {{0, 0, 0, 0}, ""},
        {{1000, 0, 0, 100}, ""},
        {{-5, 1000, 100, 0}, ""},
        {{0, 0, 2, 100}, notValid},
        {{-1, 0, 5, 5}, notValid},
        {{0, -1, 5, 5}, notValid},
        {{0, 0, 100, 100}, outside},
        {{1, 0, 99, 99}, outside},
        {{0, 1, 99, 99}, outside},
        {{0, 0, largest, 5}, outside},
        // Sums beyond the signed 64-bit range.
        {{largest, 0, 3, 3}, outside},
        {{0, largest - 1, 3, 5}, outside},
    };
    for (const auto& [aoi, message] : cases)
    {
        SCOPED_TRACE(message);
        loadAoi(sharpness, aoi);
        LogCapture log;
        const Core::ValueMap outputs = sharpness.run({{"Image", image}});
        if (message.empty())
        {
            EXPECT_TRUE(outputs.empty());
            EXPECT_TRUE(log.entries().empty());
            continue;
        }
        EXPECT_EQ(failureOf(outputs, {"Sharpness"}), prefix + message);
        sharpness.expectOneCheckLine(log, message);
    }
}

TEST_F(SharpnessExtractorTest, ForeignValuesAndDeeperErrorsEndWithoutALogLine)
{
    loadAoi(sharpness, {1, 1, 5, 5});
    LogCapture log;
    EXPECT_EQ(failureOf(sharpness.run({{"Image", Utils::Variant(Core::Integer(3, nullptr))}}), {"Sharpness"}),
              prefix + "Could not cast variant value to requested type.");
    const auto error = sensorFault();
    const auto partlyBroken =
        sharpness.run({{"Image", claimingImage(Tarvik::PixelType_Mono8, 8, 8, 64, error)}});
    EXPECT_EQ(partlyBroken.at("Sharpness").get<Core::IFloat>(true)->getError(false), error);

    EXPECT_TRUE(log.entries().empty());
}

struct Measured
{
    const char* name;
    EPixelType type;
    Packing packing;
    uint32_t bits;
    uint32_t samplesPerPixel;
    bool converted; // to Mono8 by the format converter before the measurement
    uint32_t width;
    uint32_t height;
    size_t paddingX;
    Aoi aoi;
};

// Plain mono is measured as it stands, Mono12 in words on the 16-bit path, and the
// largest AOI that fits strictly inside passes. Colour and Bayer are measured on the
// format converter's Mono8, packed mono on its unpacked values unchanged, at the low
// end of their bytes or words.
TEST_F(SharpnessExtractorTest, EveryFormatGivesTheReferenceFigure)
{
    using namespace Tarvik;
    const Measured cases[] = {
        {"Mono8", PixelType_Mono8, Packing::Bytes, 8, 1, false, 640, 480, 13, {5, 7, 600, 400}},
        {"Mono8 99x99", PixelType_Mono8, Packing::Bytes, 8, 1, false, 100, 100, 0, {0, 0, 99, 99}},
        {"Mono16", PixelType_Mono16, Packing::Words, 16, 1, false, 300, 200, 3, {1, 1, 298, 198}},
        {"Mono12", PixelType_Mono12, Packing::Words, 12, 1, false, 64, 48, 2, {10, 3, 40, 40}},
        // A new layout for the converted image each time.
        {"BayerRG8", PixelType_BayerRG8, Packing::Bytes, 8, 1, true, 26, 19, 1, {3, 2, 20, 15}},
        {"RGB8", PixelType_RGB8, Packing::Bytes, 8, 3, true, 27, 19, 1, {3, 2, 20, 15}},
        {"BayerGB12", PixelType_BayerGB12, Packing::Words, 12, 1, true, 28, 19, 1, {3, 2, 20, 15}},
        {"Mono4p", PixelType_Mono4p, Packing::LsbStream, 4, 1, false, 26, 19, 1, {3, 2, 20, 15}},
        {"Mono12p", PixelType_Mono12p, Packing::LsbStream, 12, 1, false, 27, 19, 1, {3, 2, 20, 15}},
    };
    uint32_t seed = 40;
    for (const Measured& c : cases)
    {
        SCOPED_TRACE(c.name);
        const SampleGrid grid = randomGrid(c.width, c.height, c.samplesPerPixel, 1u << c.bits, seed++);
        const std::vector<uint8_t> bytes = encode(grid, c.packing, c.bits, c.paddingX);
        SampleGrid measured = grid;
        if (c.converted)
        {
            CImageFormatConverter converter;
            converter.OutputPixelFormat.SetValue(PixelType_Mono8);
            std::vector<uint8_t> mono(size_t{c.width} * c.height);
            converter.Convert(mono.data(), mono.size(), bytes.data(), bytes.size(), c.type, c.width, c.height,
                              c.paddingX);
            measured = SampleGrid{c.width, c.height, 1, std::vector<uint16_t>(mono.begin(), mono.end())};
        }
        loadAoi(sharpness, c.aoi);
        expectSameFigure(figure(c.type, c.width, c.height, c.paddingX, bytes),
                         referenceFigure(referenceSums(
                             measured, static_cast<uint32_t>(c.aoi.left), static_cast<uint32_t>(c.aoi.top),
                             static_cast<uint32_t>(c.aoi.width), static_cast<uint32_t>(c.aoi.height))));
    }
}

TEST_F(SharpnessExtractorTest, UniformRegionsGiveInfinitiesAndNaNWithoutAnError)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct
    {
        uint8_t value;
        int64_t size;
        double expected;
    } cases[] = {
        {200, 5, -infinity},
        {1, 5, std::nan("")},
        {0, 5, infinity},
        {0, 3, std::nan("")}, // one measured pixel
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(testing::Message() << int{c.value} << " in " << c.size << "x" << c.size);
        loadAoi(sharpness, {1, 1, c.size, c.size});
        expectSameFigure(figure(Tarvik::PixelType_Mono8, 8, 8, 0, std::vector<uint8_t>(64, c.value)),
                         c.expected);
    }
}

} // namespace
