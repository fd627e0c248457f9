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
const std::vector<std::string> allPins = {"Blue", "Green", "Lum", "Red"};

class HistogramExtractorTest : public ::testing::Test
{
protected:
    TestedNode histogram{"HistogramExtractor"};

    Core::ValueMap runOn(EPixelType type, const SampleGrid& grid, Packing packing, uint32_t bits,
                         size_t paddingX)
    {
        return histogram.run({{"Image", imageVariant(type, grid.width, grid.height, paddingX,
                                                     encode(grid, packing, bits, paddingX))}});
    }

    static Utils::COWPtr<HistogramArray> array(const Core::ValueMap& outputs, const std::string& pin)
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

    // One Integer per value of the depth.
    static void expectMono(const Core::ValueMap& outputs, const Counts& lum)
    {
        EXPECT_EQ(pinNames(outputs), std::vector<std::string>{"Lum"});
        EXPECT_EQ(counts(outputs, "Lum"), lum);
        auto histogram = array(outputs, "Lum");
        EXPECT_EQ(histogram->getSizeProperty()->getValue(), static_cast<int64_t>(lum.size()));
        EXPECT_EQ(histogram->elementRef(lum.size() - 1)->getTypeInfo(true),
                  Utils::TypeInfo::get<Core::Integer>(true));
    }

    static void expectColour(const Core::ValueMap& outputs, const Histograms& expected)
    {
        EXPECT_EQ(pinNames(outputs), (std::vector<std::string>{"Blue", "Green", "Red"}));
        EXPECT_EQ(counts(outputs, "Red"), expected.red);
        EXPECT_EQ(counts(outputs, "Green"), expected.green);
        EXPECT_EQ(counts(outputs, "Blue"), expected.blue);
    }
};

// Only the image's own error stops the counting; an error deeper down does not.
TEST_F(HistogramExtractorTest, CountsAnImageWhoseErrorLiesOnlyDeeper)
{
    Counts sevens(256);
    sevens[7] = 64;
    expectMono(histogram.run({{"Image", claimingImage(Tarvik::PixelType_Mono8, 8, 8, 64, sensorFault())}}),
               sevens);
}

TEST_F(HistogramExtractorTest, FailuresInsideTheCountingEndAsErrorValuesWithoutALogLine)
{
    LogCapture log;
    // A stray 13-bit value fails a Bayer image as a whole, each pin with an error object of its own.
    const auto outputs =
        runOn(Tarvik::PixelType_BayerRG12, SampleGrid{2, 2, 1, {1, 5000, 2, 3}}, Packing::Words, 12, 0);
    EXPECT_EQ(failureOf(outputs, allPins),
              prefix + "Internal error in histogram sampling. Sample out of range.");
    std::set<const Core::IError*> errors;
    for (const std::string& pin : allPins)
        errors.insert(array(outputs, pin)->getError(false).get());
    EXPECT_EQ(errors.size(), allPins.size());

    EXPECT_EQ(
        failureOf(histogram.run({{"Image", claimingImage(static_cast<EPixelType>(0), 2, 2, 12)}}), allPins),
        prefix + "Unknown exception occurred.");
    EXPECT_TRUE(log.entries().empty());
}

enum class Layout
{
    Mono,
    Bayer,
    Colour
};

struct Format
{
    const char* name;
    EPixelType type;
    Packing packing;
    uint32_t bits;
    Layout layout;
    Pattern pattern;   // of Bayer
    const char* order; // of colour samples in memory, alpha left out
    uint32_t samplesPerPixel;
    uint32_t width;
    uint32_t height;
    uint32_t paddingX;
};

// Mono gives only "Lum", Bayer and colour only "Red", "Green" and "Blue"; packed
// formats are unpacked first, and each is counted into the bins of its depth. Each
// image on the same node starts afresh.
TEST_F(HistogramExtractorTest, EveryFormatGivesTheReferenceCounts)
{
    using namespace Tarvik;
    constexpr Pattern none = Pattern::RG;
    const Format formats[] = {
        {"Mono8", PixelType_Mono8, Packing::Bytes, 8, Layout::Mono, none, nullptr, 1, 640, 480, 13},
        {"Mono16", PixelType_Mono16, Packing::Words, 16, Layout::Mono, none, nullptr, 1, 512, 128, 0},
        {"BayerRG8", PixelType_BayerRG8, Packing::Bytes, 8, Layout::Bayer, Pattern::RG, nullptr, 1, 31, 9, 1},
        {"RGB8", PixelType_RGB8, Packing::Bytes, 8, Layout::Colour, none, "RGB", 3, 9, 31, 2},
        {"Mono1p", PixelType_Mono1p, Packing::LsbStream, 1, Layout::Mono, none, nullptr, 1, 6, 4, 0},
        {"Mono12p", PixelType_Mono12p, Packing::LsbStream, 12, Layout::Mono, none, nullptr, 1, 6, 4, 0},
        {"Mono10Packed", PixelType_Mono10Packed, Packing::GroupedMsb, 10, Layout::Mono, none, nullptr, 1, 6,
         4, 0},
        {"BayerGR12Packed", PixelType_BayerGR12Packed, Packing::GroupedMsb, 12, Layout::Bayer, Pattern::GR,
         nullptr, 1, 6, 4, 0},
        {"BayerRG10p", PixelType_BayerRG10p, Packing::LsbStream, 10, Layout::Bayer, Pattern::RG, nullptr, 1,
         6, 4, 0},
        {"BayerGB10p", PixelType_BayerGB10p, Packing::LsbStream, 10, Layout::Bayer, Pattern::GB, nullptr, 1,
         6, 4, 0},
        {"BayerBG12p", PixelType_BayerBG12p, Packing::LsbStream, 12, Layout::Bayer, Pattern::BG, nullptr, 1,
         6, 4, 0},
        // 10 bits in words through RGB16 into 1024 bins; 8 bits through RGB8, alpha dropped.
        {"BGR10", PixelType_BGR10, Packing::Words, 10, Layout::Colour, none, "BGR", 3, 11, 5, 2},
        {"RGBa8", PixelType_RGBa8, Packing::Bytes, 8, Layout::Colour, none, "RGB", 4, 7, 6, 1},
    };
    uint32_t seed = 10;
    for (const Format& format : formats)
        for (const auto& [width, height, paddingX] :
             {std::tuple{format.width, format.height, format.paddingX}, std::tuple{13u, 7u, 3u}})
        {
            SCOPED_TRACE(testing::Message() << format.name << " " << width << "x" << height);
            const size_t bins = size_t{1} << format.bits;
            const SampleGrid grid =
                randomGrid(width, height, format.samplesPerPixel, static_cast<uint32_t>(bins), seed++);
            const auto outputs = runOn(format.type, grid, format.packing, format.bits, paddingX);
            if (format.layout == Layout::Mono)
                expectMono(outputs, referenceMono(grid, bins).lum);
            else if (format.layout == Layout::Bayer)
                expectColour(outputs, referenceBayer(grid, bins, format.pattern));
            else
                expectColour(outputs, referenceColor(grid, bins, format.order, false));
        }
}

} // namespace
