#include "check_line.h"
#include "log_capture.h"
#include "node_test_support.h"
#include "reference_histogram.h"

#include <TarvikDataProcessingCore/core/IArray.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <set>

using namespace NodeTestSupport;
using namespace HistogramTest;
using Tarvik::EPixelType;

namespace
{

using HistogramArray = Core::IArrayT<Core::IInteger, void>;
using Counts = std::vector<uint32_t>;

const std::string prefix = "Could not extract histogram data. Reason: ";
const char* const allPins[] = {"Red", "Green", "Blue", "Lum"};

class HistogramExtractorTest : public ::testing::Test
{
protected:
    PackageLoader package{builtPackagePath()};
    std::shared_ptr<Core::INode> node = package.createNode("HistogramExtractor");
    std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<TestUpdate>();

    Core::ValueMap run(Core::ValueMap inputs) { return node->run(update, std::move(inputs)).at(update); }

    Core::ValueMap runOn(EPixelType type, const SampleGrid& grid, Packing packing, uint32_t bits,
                         size_t paddingX)
    {
        return run({{"Image", imageVariant(type, grid.width, grid.height, paddingX,
                                           encode(grid, packing, bits, paddingX))}});
    }

    static Utils::COWPtr<HistogramArray> array(const Core::ValueMap& outputs, const char* pin)
    {
        return outputs.at(pin).get<Utils::COWPtr<HistogramArray>>(true);
    }

    // The counts of one pin, each element read as the Integer it must be.
    static Counts counts(const Core::ValueMap& outputs, const char* pin)
    {
        const auto histogram = array(outputs, pin);
        EXPECT_FALSE(histogram->hasError(true)) << pin << ": " << histogram->getError(true)->getDescription();
        Counts result;
        for (size_t value = 0; value < histogram->getSize(); ++value)
            result.push_back(static_cast<uint32_t>(histogram->elementRef(value)->getValue()));
        return result;
    }

    static void expectPins(const Core::ValueMap& outputs, std::initializer_list<const char*> pins)
    {
        std::vector<std::string> names;
        for (const auto& [name, value] : outputs)
            names.push_back(name.c_str());
        EXPECT_EQ(names, std::vector<std::string>(pins.begin(), pins.end()));
    }

    static void expectMono(const Core::ValueMap& outputs, const Counts& lum)
    {
        expectPins(outputs, {"Lum"});
        EXPECT_EQ(counts(outputs, "Lum"), lum);
    }

    static void expectColour(const Core::ValueMap& outputs, const Histograms& expected)
    {
        expectPins(outputs, {"Blue", "Green", "Red"});
        EXPECT_EQ(counts(outputs, "Red"), expected.red);
        EXPECT_EQ(counts(outputs, "Green"), expected.green);
        EXPECT_EQ(counts(outputs, "Blue"), expected.blue);
    }

    // All four pins in error state with one description, which is returned.
    static std::string failureOf(const Core::ValueMap& outputs)
    {
        expectPins(outputs, {"Blue", "Green", "Lum", "Red"});
        const std::string description = array(outputs, "Red")->getError(false)->getDescription().c_str();
        for (const char* pin : allPins)
        {
            const auto histogram = array(outputs, pin);
            EXPECT_TRUE(histogram->hasError(false)) << pin;
            EXPECT_EQ(histogram->getError(false)->getDescription().c_str(), description) << pin;
        }
        return description;
    }

    // A failure of run() itself gives each pin an error object of its own.
    static void expectDistinctErrors(const Core::ValueMap& outputs)
    {
        std::set<const Core::IError*> errors;
        for (const char* pin : allPins)
            errors.insert(array(outputs, pin)->getError(false).get());
        EXPECT_EQ(errors.size(), std::size(allPins));
    }
};

void expectOneCheckLine(const LogCapture& log, const std::string& message)
{
    ::expectOneCheckLine(log, "HistogramExtractor",
                         "src/tessals/tarvikviewertessalspackage/histogramextractor.cpp", message);
}

TEST_F(HistogramExtractorTest, RefusesMissingInvalidAndForeignInputsWithOneLogLine)
{
    struct Case
    {
        Core::ValueMap inputs;
        std::string message;
    };
    const std::string noImage = "Input data does not contain an image or input data is not valid.";
    const Case cases[] = {
        {{}, noImage},
        {{{"Image", Utils::Variant()}}, noImage},
        {{{"Image", Utils::Variant(Core::Integer(3, nullptr))}}, "Input image is not of type IImage."},
        {{{"Image", imageVariant(Tarvik::PixelType_Mono8, 0, 4, 0, {})}},
         "Input image has no width or height."},
        {{{"Image", imageVariant(Tarvik::PixelType_RGB16, 4, 0, 0, {})}},
         "Input image has no width or height."},
    };
    for (const Case& c : cases)
    {
        LogCapture log;
        EXPECT_EQ(failureOf(run(c.inputs)), prefix + c.message);
        expectOneCheckLine(log, c.message);
    }
}

TEST_F(HistogramExtractorTest, HandsTheImagesOwnErrorToAllFourPinsWithoutALogLine)
{
    LogCapture log;
    const auto error = std::make_shared<Core::InvalidValueError>("sensor fault", Utils::DateTime::now());
    Utils::Variant input;
    input.setData(Utils::COWPtr<Core::IImage>(new Core::Image(error, nullptr)));
    const auto outputs = run({{"Image", input}});
    EXPECT_EQ(failureOf(outputs), "sensor fault");
    for (const char* pin : allPins)
        EXPECT_EQ(array(outputs, pin)->getError(false), error) << pin;
    EXPECT_TRUE(log.entries().empty());

    // Only the image's own error stops the counting; an error deeper down does not.
    Counts sevens(256);
    sevens[7] = 64;
    expectMono(run({{"Image", claimingImage(Tarvik::PixelType_Mono8, 8, 8, 64, error)}}), sevens);
}

TEST_F(HistogramExtractorTest, FailuresInsideTheCountingEndAsErrorValuesWithoutALogLine)
{
    LogCapture log;
    // A stray 13-bit value fails a Bayer image as a whole.
    const auto outputs =
        runOn(Tarvik::PixelType_BayerRG12, SampleGrid{2, 2, 1, {1, 5000, 2, 3}}, Packing::Words, 12, 0);
    EXPECT_EQ(failureOf(outputs), prefix + "Internal error in histogram sampling. Sample out of range.");
    expectDistinctErrors(outputs);

    // The undefined type is refused by the format converter.
    const std::string refused =
        failureOf(run({{"Image", claimingImage(Tarvik::PixelType_Undefined, 2, 2, 12)}}));
    EXPECT_TRUE(refused.starts_with(prefix)) << refused;
    EXPECT_GT(refused.size(), prefix.size());

    EXPECT_EQ(failureOf(run({{"Image", claimingImage(static_cast<EPixelType>(0), 2, 2, 12)}})),
              prefix + "Unknown exception occurred.");
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(HistogramExtractorTest, Mono8GivesOnlyLumAndBayerAndColourOnlyRedGreenBlue)
{
    const SampleGrid mono = randomGrid(640, 480, 1, 256, 1);
    const auto lum = runOn(Tarvik::PixelType_Mono8, mono, Packing::Bytes, 8, 13);
    expectMono(lum, referenceMono(mono, 256).lum);
    EXPECT_EQ(array(lum, "Lum")->getSizeProperty()->getValue(), 256);

    const SampleGrid bayer = randomGrid(31, 9, 1, 256, 2);
    expectColour(runOn(Tarvik::PixelType_BayerRG8, bayer, Packing::Bytes, 8, 1),
                 referenceBayer(bayer, 256, Pattern::RG));

    const SampleGrid rgb = randomGrid(9, 31, 3, 256, 3);
    expectColour(runOn(Tarvik::PixelType_RGB8, rgb, Packing::Bytes, 8, 2),
                 referenceColor(rgb, 256, "RGB", false));
}

TEST_F(HistogramExtractorTest, Mono16GivesAnIntegerPerValueAndTheNextImageStartsAfresh)
{
    SampleGrid grid{512, 128, 1, std::vector<uint16_t>(512 * 128)};
    for (size_t i = 0; i < grid.samples.size(); ++i)
        grid.samples[i] = static_cast<uint16_t>(i % 65536);
    const auto wide = runOn(Tarvik::PixelType_Mono16, grid, Packing::Words, 16, 0);
    const auto histogram = array(wide, "Lum");
    ASSERT_EQ(histogram->getSize(), 65536u);
    EXPECT_EQ(histogram->elementRef(65535)->getTypeInfo(true), Utils::TypeInfo::get<Core::Integer>(true));
    EXPECT_EQ(counts(wide, "Lum"), Counts(65536, 1));

    const SampleGrid narrow = randomGrid(16, 16, 1, 256, 4);
    const auto next = runOn(Tarvik::PixelType_Mono8, narrow, Packing::Bytes, 8, 0);
    expectMono(next, referenceMono(narrow, 256).lum);
}

struct PackedFormat
{
    const char* name;
    EPixelType type;
    Packing packing;
    uint32_t bits;
    bool bayer;
    Pattern pattern;
};

// Unpacked first, then counted into the bins of the input's depth.
TEST_F(HistogramExtractorTest, PackedFormatsAreUnpackedWithTheirValuesAndPattern)
{
    using namespace Tarvik;
    const PackedFormat formats[] = {
        {"Mono1p", PixelType_Mono1p, Packing::LsbStream, 1, false, Pattern::RG},
        {"Mono12p", PixelType_Mono12p, Packing::LsbStream, 12, false, Pattern::RG},
        {"Mono10Packed", PixelType_Mono10Packed, Packing::GroupedMsb, 10, false, Pattern::RG},
        {"BayerGR12Packed", PixelType_BayerGR12Packed, Packing::GroupedMsb, 12, true, Pattern::GR},
        {"BayerRG10p", PixelType_BayerRG10p, Packing::LsbStream, 10, true, Pattern::RG},
        {"BayerGB10p", PixelType_BayerGB10p, Packing::LsbStream, 10, true, Pattern::GB},
        {"BayerBG12p", PixelType_BayerBG12p, Packing::LsbStream, 12, true, Pattern::BG},
    };
    uint32_t seed = 10;
    for (const PackedFormat& format : formats)
        for (const auto& [width, height, paddingX] : {std::tuple{6u, 4u, 0u}, std::tuple{13u, 7u, 3u}})
        {
            SCOPED_TRACE(testing::Message() << format.name << " " << width << "x" << height);
            const size_t bins = size_t{1} << format.bits;
            const SampleGrid grid = randomGrid(width, height, 1, static_cast<uint32_t>(bins), seed++);
            const auto outputs = runOn(format.type, grid, format.packing, format.bits, paddingX);
            if (format.bayer)
                expectColour(outputs, referenceBayer(grid, bins, format.pattern));
            else
                expectMono(outputs, referenceMono(grid, bins).lum);
        }
}

// The samples of `grid` in another memory order: `order` gives for each output
// sample the index of the input sample.
SampleGrid reordered(const SampleGrid& grid, std::vector<uint32_t> order)
{
    SampleGrid result{grid.width, grid.height, static_cast<uint32_t>(order.size()), {}};
    for (uint32_t y = 0; y < grid.height; ++y)
        for (uint32_t x = 0; x < grid.width; ++x)
            for (uint32_t sample : order)
                result.samples.push_back(grid.at(x, y, sample));
    return result;
}

TEST_F(HistogramExtractorTest, OtherColourTypesAreConvertedWithTheirValues)
{
    // 10 bits in words through RGB16 into 1024 bins; 8 bits through RGB8, alpha dropped.
    const SampleGrid bgr10 = randomGrid(11, 5, 3, 1024, 20);
    expectColour(runOn(Tarvik::PixelType_BGR10, bgr10, Packing::Words, 10, 2),
                 referenceColor(bgr10, 1024, "BGR", false));
    const SampleGrid rgba = randomGrid(7, 6, 4, 256, 21);
    expectColour(runOn(Tarvik::PixelType_RGBa8, rgba, Packing::Bytes, 8, 1),
                 referenceColor(reordered(rgba, {0, 1, 2}), 256, "RGB", false));
}

} // namespace
