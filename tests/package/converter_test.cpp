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

// An image over memory of the test's own, of any type and claimed size.
class RawImage : public Core::IImage
{
public:
    RawImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, uint8_t* data, size_t size)
        : m_type(type)
        , m_width(width)
        , m_height(height)
        , m_data(data)
        , m_size(size)
    {
    }
    bool hasError(bool) const override { return false; }
    std::shared_ptr<Core::IError> getError(bool) const override { return nullptr; }
    Tarvik::EPixelType getPixelType() const override { return m_type; }
    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    size_t getImageSize() const override { return m_size; }
    Core::ImageDataView<const void> getImageData() const override { return {m_data, 0}; }
    Core::ImageDataView<void> getImageData() override { return {m_data, 0}; }
    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Utils::TypeInfo::get<RawImage>(mustExist);
    }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }

private:
    Tarvik::EPixelType m_type;
    uint32_t m_width;
    uint32_t m_height;
    uint8_t* m_data;
    size_t m_size;
};

const Utils::TypeRegistrar<RawImage, Utils::DirectBase<Core::IImage>, Utils::IndirectBase<Core::IValue>,
                           Utils::IndirectBase<Utils::IObject>>
    rawImageType("RawImage");

void expectOneCheckLine(const LogCapture& log, const std::string& message)
{
    ::expectOneCheckLine(log, "Converter", "src/tessals/tarvikviewertessalspackage/converter.cpp", message);
}

} // namespace

TEST_F(ConverterTest, Mono8BecomesANewMono8ImageAndTheInputPassesUnchanged)
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

TEST_F(ConverterTest, Rgb8BecomesBgra8WithOpaqueAlpha)
{
    const auto outputs =
        run({{"Image", imageVariant(Tarvik::PixelType_RGB8, 2, 1, 0, {10, 20, 30, 40, 50, 60})}});
    EXPECT_EQ(bytesOf(*image(outputs, "ImageConverted")),
              (std::vector<uint8_t>{30, 20, 10, 255, 60, 50, 40, 255}));
}

TEST_F(ConverterTest, RefusesAnImageWithoutWidthOrHeightWithOneLogLine)
{
    LogCapture log;
    const auto outputs = run({{"Image", imageVariant(Tarvik::PixelType_Mono8, 0, 100, 0, {})}});
    EXPECT_EQ(failureOf(outputs), "Could not convert image. Reason: Input image has no width or height.");
    expectOneCheckLine(log, "Input image has no width or height.");
}

TEST_F(ConverterTest, RefusesAMissingOrInvalidInput)
{
    for (const Core::ValueMap& inputs : {Core::ValueMap{}, Core::ValueMap{{"Image", Utils::Variant()}}})
    {
        LogCapture log;
        EXPECT_EQ(failureOf(run(inputs)),
                  "Could not convert image. Reason: Input data does not contain an image or "
                  "input data is not valid.");
        expectOneCheckLine(log, "Input data does not contain an image or input data is not valid.");
    }
}

TEST_F(ConverterTest, RefusesAValueOfAnotherType)
{
    LogCapture log;
    const auto outputs = run({{"Image", Utils::Variant(Core::Integer(1, nullptr))}});
    EXPECT_EQ(failureOf(outputs), "Could not convert image. Reason: Input image is not of type IImage.");
    expectOneCheckLine(log, "Input image is not of type IImage.");
}

TEST_F(ConverterTest, HandsAnInputErrorOnToBothPinsWithoutALogLine)
{
    LogCapture log;
    auto error = std::make_shared<Core::InvalidValueError>("sensor fault", Utils::DateTime::now());
    Utils::Variant input;
    input.setData(Utils::COWPtr<Core::IImage>(new Core::Image(error, nullptr)));
    const auto outputs = run({{"Image", input}});
    for (const char* pin : {"Image", "ImageConverted"})
        EXPECT_EQ(image(outputs, pin)->getError(false), error) << pin;
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(ConverterTest, FailuresOfTheFormatConverterEndAsErrorValuesWithoutALogLine)
{
    struct Case
    {
        Tarvik::EPixelType type;
        size_t size;
    };
    // The undefined type goes to BGRA8 and is refused there; a Mono8 image that
    // claims fewer bytes than its rows need is refused as a short source.
    for (const Case c : {Case{Tarvik::PixelType_Undefined, 16}, Case{Tarvik::PixelType_Mono8, 3}})
    {
        LogCapture log;
        std::vector<uint8_t> pixels(16, 7);
        Utils::Variant input;
        input.setData(Utils::COWPtr<Core::IImage>(new RawImage(c.type, 2, 2, pixels.data(), c.size)));
        const auto outputs = run({{"Image", input}});
        const std::string failure = failureOf(outputs);
        EXPECT_TRUE(failure.starts_with("Could not convert image. Reason: ")) << failure;
        EXPECT_GT(failure.size(), std::string("Could not convert image. Reason: ").size());
        EXPECT_TRUE(log.entries().empty());
    }
}

TEST_F(ConverterTest, PublishesTheFormatConvertersNodeMapWithTheNodesChoices)
{
    auto* const container = nodeMapContainer(*converter);
    ASSERT_NE(container, nullptr);
    const auto maps = container->getNodeMaps();
    ASSERT_EQ(maps.size(), 1u);
    EXPECT_EQ(maps[0].first, "@ImageFormatConverter");
    GenApi::INodeMap* const nodeMap = maps[0].second;
    ASSERT_NE(nodeMap, nullptr);
    EXPECT_EQ(nodeMap->GetNode("OutputPaddingX")->GetVisibility(), GenApi::Invisible);
    EXPECT_EQ(nodeMap->GetNode("InconvertibleEdgeHandling")->GetVisibility(), GenApi::Invisible);
    EXPECT_NE(nodeMap->GetNode("OutputBitAlignment")->GetVisibility(), GenApi::Invisible);
    EXPECT_NE(nodeMap->GetNode("OutputOrientation")->GetVisibility(), GenApi::Invisible);
    EXPECT_EQ(GenApi::CEnumerationPtr(nodeMap->GetNode("OutputBitAlignment"))->GetIntValue(), 1);
}

TEST_F(ConverterTest, AWriteThroughTheNodeMapChangesTheNextConversion)
{
    GenApi::INodeMap* const nodeMap = nodeMapContainer(*converter)->getNodeMaps()[0].second;
    GenApi::CEnumerationPtr orientation(nodeMap->GetNode("OutputOrientation"));
    const auto input = imageVariant(Tarvik::PixelType_Mono8, 2, 2, 0, {1, 2, 3, 4});
    EXPECT_EQ(bytesOf(*image(run({{"Image", input}}), "ImageConverted")), (std::vector<uint8_t>{1, 2, 3, 4}));
    orientation->SetIntValue(1);
    EXPECT_EQ(bytesOf(*image(run({{"Image", input}}), "ImageConverted")), (std::vector<uint8_t>{3, 4, 1, 2}));
}
