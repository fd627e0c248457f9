#include "node_test_support.h"

#include <GenApi/GenApi.h>

using namespace NodeTestSupport;

namespace
{

class ConverterTest : public ::testing::Test
{
protected:
    TestedNode converter{"Converter"};

    static Utils::COWPtr<Core::IImage> image(const Core::ValueMap& outputs, const char* pin)
    {
        return outputs.at(pin).get<Utils::COWPtr<Core::IImage>>(true);
    }
};

} // namespace

TEST_F(ConverterTest, ConvertsIntoANewImageAndPassesTheInputUnchanged)
{
    const std::vector<uint8_t> pixels = {1, 2, 3, 4, 5, 6};
    const Utils::Variant input = imageVariant(Tarvik::PixelType_Mono8, 3, 2, 0, pixels);
    const auto outputs = converter.run({{"Image", input}});
    const auto original = image(outputs, "Image");
    const auto converted = image(outputs, "ImageConverted");
    EXPECT_EQ(original->getImageData().data, input.get<Core::IImage>(true)->getImageData().data);
    EXPECT_NE(converted->getImageData().data, original->getImageData().data);
    EXPECT_EQ(converted->getPixelType(), Tarvik::PixelType_Mono8);
    EXPECT_EQ(bytesOf(*converted), pixels);

    // Colour becomes BGRa8 with opaque alpha.
    const auto rgb =
        converter.run({{"Image", imageVariant(Tarvik::PixelType_RGB8, 2, 1, 0, {10, 20, 30, 40, 50, 60})}});
    EXPECT_EQ(bytesOf(*image(rgb, "ImageConverted")),
              (std::vector<uint8_t>{30, 20, 10, 255, 60, 50, 40, 255}));
}

TEST_F(ConverterTest, ChoosesMono8ForMonoAndBgra8ForEverythingElse)
{
    using namespace Tarvik;
    const std::pair<EPixelType, EPixelType> cases[] = {
        {PixelType_Mono12, PixelType_Mono8},
        {PixelType_Mono16, PixelType_Mono8},
        {PixelType_Mono12Packed, PixelType_Mono8},
        {PixelType_Mono10p, PixelType_Mono8},
        {PixelType_Mono1p, PixelType_Mono8},
        {PixelType_BayerRG8, PixelType_BGRa8},
        {static_cast<EPixelType>(0x010C0053), PixelType_BGRa8},
        {PixelType_RGB8, PixelType_BGRa8},
        {PixelType_YUV422_8, PixelType_BGRa8},
    };
    for (const auto& [source, target] : cases)
    {
        const size_t size = ComputeBufferSize(source, 6, 4, 0);
        const auto converted =
            image(converter.run({{"Image", imageVariant(source, 6, 4, 0, std::vector<uint8_t>(size, 0x40))}}),
                  "ImageConverted");
        ASSERT_FALSE(converted->hasError(false))
            << std::hex << source << ": " << converted->getError(false)->getDescription();
        EXPECT_EQ(converted->getPixelType(), target) << std::hex << source;
        EXPECT_EQ(converted->getWidth(), 6u);
        EXPECT_EQ(converted->getHeight(), 4u);
    }
}

// The format converter's node map, with the choices the node makes hidden; a write
// through it changes the next conversion.
TEST_F(ConverterTest, PublishesTheFormatConvertersNodeMap)
{
    const auto maps = nodeMapContainer(*converter.node)->getNodeMaps();
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
    EXPECT_EQ(bytesOf(*image(converter.run({{"Image", input}}), "ImageConverted")),
              (std::vector<uint8_t>{3, 4, 1, 2}));
}
