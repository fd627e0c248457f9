#include "check_line.h"
#include "log_capture.h"
#include "node_test_support.h"
#include "reference_sharpness.h"

#include <TarvikDataProcessingCore/core/MemorySettings.h>
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

struct Aoi
{
    int64_t left;
    int64_t top;
    int64_t width;
    int64_t height;
};

class SharpnessExtractorTest : public ::testing::Test
{
protected:
    PackageLoader package{builtPackagePath()};
    std::shared_ptr<Core::INode> node = package.createNode("SharpnessExtractor");
    std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<TestUpdate>();

    void setAoi(const Aoi& aoi)
    {
        auto settings = std::make_shared<Core::MemorySettings>();
        settings->setInt("AoiLeft", aoi.left);
        settings->setInt("AoiTop", aoi.top);
        settings->setInt("AoiWidth", aoi.width);
        settings->setInt("AoiHeight", aoi.height);
        node->load(settings);
    }

    Core::ValueMap run(Core::ValueMap inputs)
    {
        const Core::UpdateOutputs outputs = node->run(update, std::move(inputs));
        EXPECT_EQ(outputs.size(), 1u);
        return outputs.at(update);
    }

    Core::ValueMap runOn(EPixelType type, const SampleGrid& grid, Packing packing, uint32_t bits,
                         size_t paddingX)
    {
        return run({{"Image", imageVariant(type, grid.width, grid.height, paddingX,
                                           encode(grid, packing, bits, paddingX))}});
    }

    static Utils::COWPtr<Core::IFloat> sharpness(const Core::ValueMap& outputs)
    {
        EXPECT_EQ(outputs.size(), 1u);
        return outputs.at("Sharpness").get<Utils::COWPtr<Core::IFloat>>(true);
    }

    static double figure(const Core::ValueMap& outputs)
    {
        const auto value = sharpness(outputs);
        EXPECT_FALSE(value->hasError(true)) << value->getError(true)->getDescription();
        return value->getValue();
    }

    static std::string failureOf(const Core::ValueMap& outputs)
    {
        const auto value = sharpness(outputs);
        EXPECT_TRUE(value->hasError(false));
        return value->getError(false)->getDescription().c_str();
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

TEST_F(SharpnessExtractorTest, PublishesTheAoiAsTessalAndKeepsItInTheSettings)
{
    const std::pair<const char*, const char*> expected[] = {{"AoiLeft", "Area of interest left"},
                                                            {"AoiTop", "Area of interest top"},
                                                            {"AoiWidth", "Area of interest width"},
                                                            {"AoiHeight", "Area of interest height"}};
    GenApi::INodeMap* const map = tessalNodeMap(*node);
    ASSERT_NE(map, nullptr);
    ASSERT_EQ(rootFeatureNames(*map),
              (std::vector<std::string>{"AoiLeft", "AoiTop", "AoiWidth", "AoiHeight"}));
    for (const auto& [name, text] : expected)
    {
        GenApi::CIntegerPtr feature = map->GetNode(name);
        EXPECT_EQ(feature->GetNode()->GetDisplayName(), text);
        EXPECT_EQ(feature->GetNode()->GetToolTip(), text);
        EXPECT_EQ(feature->GetNode()->GetVisibility(), GenApi::Guru);
        EXPECT_EQ(feature->GetRepresentation(), GenApi::PureNumber);
        EXPECT_EQ(feature->GetMax(), largest);
        EXPECT_EQ(feature->GetValue(), 0);
    }

    // A load that changes a value tells the map once; an equal one tells nobody; a missing key changes
    // nothing.
    int leftChanges = 0;
    GenApi::Register(map->GetNode("AoiLeft"), [&leftChanges](GenApi::INode*) { ++leftChanges; });
    const auto settings = std::make_shared<Core::MemorySettings>();
    settings->setInt("AoiLeft", 7);
    settings->setInt("AoiHeight", 9);
    node->load(settings);
    node->load(settings);
    node->load(nullptr);
    EXPECT_EQ(leftChanges, 1);
    GenApi::CIntegerPtr(map->GetNode("AoiWidth"))->SetValue(5);
    const auto saved = std::make_shared<Core::MemorySettings>();
    node->save(saved);
    node->save(nullptr);
    EXPECT_EQ(saved->getInt("AoiTop"), 0);
    EXPECT_EQ(saved->getInt("AoiLeft"), 7);
    EXPECT_EQ(saved->getInt("AoiWidth"), 5);
    EXPECT_EQ(saved->getInt("AoiHeight"), 9);
}

// An AOI without width or height is not set yet: no output and no log line.
TEST_F(SharpnessExtractorTest, RefusedInputsAndAoisFailWithOneLogLine)
{
    struct Case
    {
        Aoi aoi;
        Core::ValueMap inputs;
        std::string message;
    };
    const Utils::Variant image =
        imageVariant(Tarvik::PixelType_Mono8, 100, 100, 0, std::vector<uint8_t>(10000));
    const std::string noImage = "Input data does not contain an image or input data is not valid.";
    const std::string notValid = "AOI is not valid.";
    const std::string outside = "AOI is not in image boundaries.";
    const Case cases[] = {
        {{0, 0, 0, 0}, {{"Image", image}}, ""},
        {{1000, 0, 0, 100}, {{"Image", image}}, ""},
        {{-5, 1000, 100, 0}, {{"Image", image}}, ""},
        {{0, 0, 5, 5}, {}, noImage},
        {{0, 0, 5, 5}, {{"Image", Utils::Variant()}}, noImage},
        {{0, 0, 5, 5},
         {{"Image", imageVariant(Tarvik::PixelType_Mono8, 0, 4, 0, {})}},
         "Input image has no width or height."},
        {{0, 0, 2, 100}, {{"Image", image}}, notValid},
        {{-1, 0, 5, 5}, {{"Image", image}}, notValid},
        {{0, -1, 5, 5}, {{"Image", image}}, notValid},
        {{0, 0, 100, 100}, {{"Image", image}}, outside},
        {{1, 0, 99, 99}, {{"Image", image}}, outside},
        {{0, 1, 99, 99}, {{"Image", image}}, outside},
        {{0, 0, largest, 5}, {{"Image", image}}, outside},
        // Sums beyond the signed 64-bit range.
        {{largest, 0, 3, 3}, {{"Image", image}}, outside},
        {{0, largest - 1, 3, 5}, {{"Image", image}}, outside},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.message);
        setAoi(c.aoi);
        LogCapture log;
        const Core::ValueMap outputs = run(c.inputs);
        if (c.message.empty())
        {
            EXPECT_TRUE(outputs.empty());
            EXPECT_TRUE(log.entries().empty());
            continue;
        }
        EXPECT_EQ(failureOf(outputs), prefix + c.message);
        expectOneCheckLine(log, "SharpnessExtractor",
                           "src/tessals/tarvikviewertessalspackage/sharpnessextractor.cpp", c.message);
    }
}

TEST_F(SharpnessExtractorTest, ForeignValuesErrorsAndBadBuffersEndWithoutALogLine)
{
    setAoi({1, 1, 5, 5});
    LogCapture log;
    EXPECT_EQ(failureOf(run({{"Image", Utils::Variant(Core::Integer(3, nullptr))}})),
              prefix + "Could not cast variant value to requested type.");

    const auto error = std::make_shared<Core::InvalidValueError>("sensor fault", Utils::DateTime::now());
    Utils::Variant broken;
    broken.setData(Utils::COWPtr<Core::IImage>(new Core::Image(error, nullptr)));
    EXPECT_EQ(sharpness(run({{"Image", broken}}))->getError(false), error);
    const Utils::Variant partlyBroken = claimingImage(Tarvik::PixelType_Mono8, 8, 8, 64, error);
    EXPECT_EQ(sharpness(run({{"Image", partlyBroken}}))->getError(false), error);

    // Images that claim more than their buffers hold, or no known format: refused, never read beyond.
    for (const Utils::Variant& claim :
         {claimingImage(Tarvik::PixelType_Mono8, 8, 8, 63), claimingImage(Tarvik::PixelType_Mono16, 8, 8, 64),
          claimingImage(Tarvik::PixelType_BayerRG8, 8, 8, 10),
          claimingImage(Tarvik::PixelType_Undefined, 8, 8, 256),
          claimingImage(static_cast<EPixelType>(0x01080099), 8, 8, 64)})
    {
        const std::string failure = failureOf(run({{"Image", claim}}));
        EXPECT_TRUE(failure.starts_with(prefix)) << failure;
        EXPECT_GT(failure.size(), prefix.size());
    }
    EXPECT_TRUE(log.entries().empty());
}

struct MonoCase
{
    const char* name;
    EPixelType type;
    Packing packing;
    uint32_t bits;
    uint32_t width;
    uint32_t height;
    size_t paddingX;
    Aoi aoi;
};

// Plain mono is measured as it stands, Mono12 in words on the 16-bit path, and
// the largest AOI that fits strictly inside passes.
TEST_F(SharpnessExtractorTest, PlainMonoGivesTheReferenceFigure)
{
    using namespace Tarvik;
    const MonoCase cases[] = {
        {"Mono8", PixelType_Mono8, Packing::Bytes, 8, 640, 480, 13, {5, 7, 600, 400}},
        {"Mono8 99x99", PixelType_Mono8, Packing::Bytes, 8, 100, 100, 0, {0, 0, 99, 99}},
        {"Mono16", PixelType_Mono16, Packing::Words, 16, 300, 200, 3, {1, 1, 298, 198}},
        {"Mono12", PixelType_Mono12, Packing::Words, 12, 64, 48, 2, {10, 3, 40, 40}},
    };
    uint32_t seed = 40;
    for (const MonoCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        const SampleGrid grid = randomGrid(c.width, c.height, 1, 1u << c.bits, seed++);
        setAoi(c.aoi);
        const auto left = static_cast<uint32_t>(c.aoi.left);
        const auto top = static_cast<uint32_t>(c.aoi.top);
        expectSameFigure(figure(runOn(c.type, grid, c.packing, c.bits, c.paddingX)),
                         referenceFigure(referenceSums(grid, left, top, static_cast<uint32_t>(c.aoi.width),
                                                       static_cast<uint32_t>(c.aoi.height))));
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
        setAoi({1, 1, c.size, c.size});
        expectSameFigure(figure(run({{"Image", imageVariant(Tarvik::PixelType_Mono8, 8, 8, 0,
                                                            std::vector<uint8_t>(64, c.value))}})),
                         c.expected);
    }
}

struct ConvertedCase
{
    const char* name;
    EPixelType type;
    Packing packing;
    uint32_t bits;
    uint32_t samplesPerPixel;
    EPixelType measuredAs;
};

// The AOI of the conversion: the format converter's own output, and for packed
// mono the unpacked values unchanged, at the low end of their bytes or words.
TEST_F(SharpnessExtractorTest, ColourBayerAndPackedMonoAreMeasuredOnTheirConversion)
{
    using namespace Tarvik;
    const ConvertedCase cases[] = {
        {"BayerRG8", PixelType_BayerRG8, Packing::Bytes, 8, 1, PixelType_Mono8},
        {"RGB8", PixelType_RGB8, Packing::Bytes, 8, 3, PixelType_Mono8},
        {"BayerGB12", PixelType_BayerGB12, Packing::Words, 12, 1, PixelType_Mono8},
        {"Mono4p", PixelType_Mono4p, Packing::LsbStream, 4, 1, PixelType_Undefined},
        {"Mono12p", PixelType_Mono12p, Packing::LsbStream, 12, 1, PixelType_Undefined},
    };
    const Aoi aoi{3, 2, 20, 15};
    setAoi(aoi);
    uint32_t seed = 60;
    for (const ConvertedCase& c : cases)
    {
        SCOPED_TRACE(c.name);
        const uint32_t width = 26 + seed % 3; // a new layout for the converted image each time
        const SampleGrid grid = randomGrid(width, 19, c.samplesPerPixel, 1u << c.bits, seed++);
        const std::vector<uint8_t> bytes = encode(grid, c.packing, c.bits, 1);
        SampleGrid measured = grid;
        if (c.measuredAs == PixelType_Mono8)
        {
            CImageFormatConverter converter;
            converter.OutputPixelFormat.SetValue(PixelType_Mono8);
            std::vector<uint8_t> mono(size_t{width} * 19);
            converter.Convert(mono.data(), mono.size(), bytes.data(), bytes.size(), c.type, width, 19, 1);
            measured = SampleGrid{width, 19, 1, std::vector<uint16_t>(mono.begin(), mono.end())};
        }
        expectSameFigure(figure(run({{"Image", imageVariant(c.type, width, 19, 1, bytes)}})),
                         referenceFigure(referenceSums(measured, 3, 2, 20, 15)));
    }
}

} // namespace
