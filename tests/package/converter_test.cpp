#include "check_line.h"
#include "log_capture.h"
#include "node_test_support.h"

#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <GenApi/GenApi.h>

using namespace NodeTestSupport;

namespace
{

class ConverterTest : public ::testing::Test
{
protected:
    PackageLoader package{builtPackagePath()};
    std::shared_ptr<Core::INode> converter = package.createNode("Converter");
    std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<TestUpdate>();

    Core::ValueMap run(Core::ValueMap inputs) { return converter->run(update, std::move(inputs)).at(update); }

    static Utils::COWPtr<Core::IImage> image(const Core::ValueMap& outputs, const char* pin)
    {
        return outputs.at(pin).get<Utils::COWPtr<Core::IImage>>(true);
    }

    // The failure value on "ImageConverted", and nothing on "Image".
    static std::string failureOf(const Core::ValueMap& outputs)
    {
        EXPECT_EQ(outputs.count("Image"), 0u);
        const auto converted = image(outputs, "ImageConverted");
        EXPECT_TRUE(converted->hasError(false));
        return converted->getError(false)->getDescription().str();
    }
};

void expectOneCheckLine(const LogCapture& log, const std::string& message)
{
    ::expectOneCheckLine(log, "Converter", "src/tessals/tarvikviewertessalspackage/converter.cpp", message);
}

} // namespace

TEST_F(ConverterTest, ConvertsIntoANewImageAndPassesTheInputUnchanged)
{
    const std::vector<uint8_t> pixels = {1, 2, 3, 4, 5, 6};
    const Utils::Variant input = imageVariant(Tarvik::PixelType_Mono8, 3, 2, 0, pixels);
    const auto outputs = run({{"Image", input}});
    const auto original = image(outputs, "Image");
    const auto converted = image(outputs, "ImageConverted");
    EXPECT_EQ(original->getImageData().data, input.get<Core::IImage>(true)->getImageData().data);
    EXPECT_NE(converted->getImageData().data, original->getImageData().data);
    EXPECT_EQ(converted->getPixelType(), Tarvik::PixelType_Mono8);
    EXPECT_EQ(bytesOf(*converted), pixels);

    // Colour becomes BGRa8 with opaque alpha.
    const auto rgb =
        run({{"Image", imageVariant(Tarvik::PixelType_RGB8, 2, 1, 0, {10, 20, 30, 40, 50, 60})}});
    EXPECT_EQ(bytesOf(*image(rgb, "ImageConverted")),
              (std::vector<uint8_t>{30, 20, 10, 255, 60, 50, 40, 255}));
}

TEST_F(ConverterTest, ChoosesMono8ForMonoAndBgra8ForEverythingElse)
{
    struct Case
    {
        Tarvik::EPixelType source;
        Tarvik::EPixelType target;
    };
    const Case cases[] = {
        {Tarvik::PixelType_Mono12, Tarvik::PixelType_Mono8},
        {Tarvik::PixelType_Mono16, Tarvik::PixelType_Mono8},
        {Tarvik::PixelType_Mono12Packed, Tarvik::PixelType_Mono8},
        {Tarvik::PixelType_Mono10p, Tarvik::PixelType_Mono8},
        {Tarvik::PixelType_Mono1p, Tarvik::PixelType_Mono8},
        {Tarvik::PixelType_BayerRG8, Tarvik::PixelType_BGRa8},
        {static_cast<Tarvik::EPixelType>(0x010C0053), Tarvik::PixelType_BGRa8},
        {Tarvik::PixelType_RGB8, Tarvik::PixelType_BGRa8},
        {Tarvik::PixelType_YUV422_8, Tarvik::PixelType_BGRa8},
    };
    for (const Case& c : cases)
    {
        const size_t size = Tarvik::ComputeBufferSize(c.source, 6, 4, 0);
        const auto outputs =
            run({{"Image", imageVariant(c.source, 6, 4, 0, std::vector<uint8_t>(size, 0x40))}});
        const auto converted = image(outputs, "ImageConverted");
        ASSERT_FALSE(converted->hasError(false))
            << std::hex << c.source << ": " << converted->getError(false)->getDescription();
        EXPECT_EQ(converted->getPixelType(), c.target) << std::hex << c.source;
        EXPECT_EQ(converted->getWidth(), 6u);
        EXPECT_EQ(converted->getHeight(), 4u);
    }
}

TEST_F(ConverterTest, RefusesMissingInvalidForeignAndEmptyInputsWithOneLogLine)
{
    const std::string noImage = "Input data does not contain an image or input data is not valid.";
    const std::pair<Core::ValueMap, std::string> cases[] = {
        {{}, noImage},
        {{{"Image", Utils::Variant()}}, noImage},
        {{{"Image", Utils::Variant(Core::Integer(1, nullptr))}}, "Input image is not of type IImage."},
        {{{"Image", imageVariant(Tarvik::PixelType_Mono8, 0, 100, 0, {})}},
         "Input image has no width or height."},
    };
    for (const auto& [inputs, message] : cases)
    {
        LogCapture log;
        EXPECT_EQ(failureOf(run(inputs)), "Could not convert image. Reason: " + message);
        expectOneCheckLine(log, message);
    }
}

// An input's error reaches both pins as it is. The undefined type goes to BGRa8 and
// is refused there; a Mono8 image that claims fewer bytes than its rows need is
// refused as a short source.
TEST_F(ConverterTest, InputErrorsAndConverterFailuresEndAsErrorValuesWithoutALogLine)
{
    LogCapture log;
    auto error = std::make_shared<Core::InvalidValueError>("sensor fault", Utils::DateTime::now());
    Utils::Variant input;
    input.setData(Utils::COWPtr<Core::IImage>(new Core::Image(error, nullptr)));
    const auto outputs = run({{"Image", input}});
    for (const char* pin : {"Image", "ImageConverted"})
        EXPECT_EQ(image(outputs, pin)->getError(false), error) << pin;

    const std::string prefix = "Could not convert image. Reason: ";
    for (const auto& [type, size] :
         {std::pair{Tarvik::PixelType_Undefined, 16}, std::pair{Tarvik::PixelType_Mono8, 3}})
    {
        const std::string failure = failureOf(run({{"Image", claimingImage(type, 2, 2, size)}}));
        EXPECT_TRUE(failure.starts_with(prefix)) << failure;
        EXPECT_GT(failure.size(), prefix.size());
    }
    EXPECT_TRUE(log.entries().empty());
}

// The format converter's node map, with the choices the node makes hidden; a write
// through it changes the next conversion.
TEST_F(ConverterTest, PublishesTheFormatConvertersNodeMap)
{
    const auto maps = nodeMapContainer(*converter)->getNodeMaps();
    ASSERT_EQ(maps.size(), 1u);
    EXPECT_EQ(maps[0].first, "@ImageFormatConverter");
    GenApi::INodeMap* const nodeMap = maps[0].second;
    EXPECT_EQ(nodeMap->GetNode("OutputPaddingX")->GetVisibility(), GenApi::Invisible);
    EXPECT_EQ(nodeMap->GetNode("InconvertibleEdgeHandling")->GetVisibility(), GenApi::Invisible);
    EXPECT_NE(nodeMap->GetNode("OutputBitAlignment")->GetVisibility(), GenApi::Invisible);
    EXPECT_NE(nodeMap->GetNode("OutputOrientation")->GetVisibility(), GenApi::Invisible);
    EXPECT_EQ(GenApi::CEnumerationPtr(nodeMap->GetNode("OutputBitAlignment"))->GetIntValue(), 1);

    const auto input = imageVariant(Tarvik::PixelType_Mono8, 2, 2, 0, {1, 2, 3, 4});
    GenApi::CEnumerationPtr(nodeMap->GetNode("OutputOrientation"))->SetIntValue(1);
    EXPECT_EQ(bytesOf(*image(run({{"Image", input}}), "ImageConverted")), (std::vector<uint8_t>{3, 4, 1, 2}));
}
