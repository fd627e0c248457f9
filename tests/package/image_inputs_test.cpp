// What the three nodes that take an "Image" do with an input they cannot use: one
// table for the Converter, the HistogramExtractor and the SharpnessExtractor.
#include "node_test_support.h"

#include <TarvikDataProcessingCore/core/ScalarValues.h>

using namespace NodeTestSupport;

namespace
{

struct ImageNode
{
    const char* name;
    const char* prefix;
    std::vector<std::string> failurePins;
    std::vector<std::string> errorPins; // those that hand on an input's error
};

const ImageNode converter{
    "Converter", "Could not convert image. Reason: ", {"ImageConverted"}, {"Image", "ImageConverted"}};
const ImageNode histogram{"HistogramExtractor",
                          "Could not extract histogram data. Reason: ",
                          {"Blue", "Green", "Lum", "Red"},
                          {"Blue", "Green", "Lum", "Red"}};
const ImageNode sharpness{
    "SharpnessExtractor", "Could not extract sharpness data. Reason: ", {"Sharpness"}, {"Sharpness"}};

TEST(ImageInputs, RefusedInputsFailEveryPinWithOneLogLine)
{
    const std::string noImage = "Input data does not contain an image or input data is not valid.";
    const std::string noSize = "Input image has no width or height.";
    const std::string foreign = "Input image is not of type IImage.";
    const Utils::Variant integer{Core::Integer(3, nullptr)};
    const struct
    {
        const ImageNode& node;
        Core::ValueMap inputs;
        std::string message;
    } cases[] = {
        {converter, {}, noImage},
        {converter, {{"Image", Utils::Variant()}}, noImage},
        {converter, {{"Image", integer}}, foreign},
        {converter, {{"Image", imageVariant(Tarvik::PixelType_Mono8, 0, 100, 0, {})}}, noSize},
        {histogram, {}, noImage},
        {histogram, {{"Image", Utils::Variant()}}, noImage},
        {histogram, {{"Image", integer}}, foreign},
        {histogram, {{"Image", imageVariant(Tarvik::PixelType_Mono8, 0, 4, 0, {})}}, noSize},
        {histogram, {{"Image", imageVariant(Tarvik::PixelType_RGB16, 4, 0, 0, {})}}, noSize},
        {sharpness, {}, noImage},
        {sharpness, {{"Image", Utils::Variant()}}, noImage},
        {sharpness, {{"Image", imageVariant(Tarvik::PixelType_Mono8, 0, 4, 0, {})}}, noSize},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(testing::Message() << c.node.name << ": " << c.message);
        TestedNode node(c.node.name);
        LogCapture log;
        EXPECT_EQ(failureOf(node.run(c.inputs), c.node.failurePins), c.node.prefix + c.message);
        node.expectOneCheckLine(log, c.message);
    }
}

TEST(ImageInputs, AnImagesOwnErrorReachesEveryPinAsItIsWithoutALogLine)
{
    const auto error = sensorFault();
    for (const ImageNode* imageNode : {&converter, &histogram, &sharpness})
    {
        SCOPED_TRACE(imageNode->name);
        TestedNode node(imageNode->name);
        LogCapture log;
        const auto outputs = node.run({{"Image", errorImage(error)}});
        EXPECT_EQ(failureOf(outputs, imageNode->errorPins), "sensor fault");
        for (const auto& [pin, value] : outputs)
            EXPECT_EQ(value.get<Core::IValue>(true)->getError(false), error) << pin;
        EXPECT_TRUE(log.entries().empty());
    }
}

// Images that claim more than their bytes hold, or a format the node cannot take:
// the value's failure, never a read beyond the bytes, and no log line.
TEST(ImageInputs, ImagesThatClaimTooMuchOrAnUnknownFormatFailWithoutALogLine)
{
    using namespace Tarvik;
    const std::pair<const ImageNode&, Utils::Variant> cases[] = {
        {converter, claimingImage(PixelType_Undefined, 2, 2, 16)}, // refused as BGRa8's source
        {converter, claimingImage(PixelType_Mono8, 2, 2, 3)},
        {histogram, claimingImage(PixelType_Undefined, 2, 2, 12)},
        {sharpness, claimingImage(PixelType_Mono8, 8, 8, 63)},
        {sharpness, claimingImage(PixelType_Mono16, 8, 8, 64)},
        {sharpness, claimingImage(PixelType_BayerRG8, 8, 8, 10)},
        {sharpness, claimingImage(PixelType_Undefined, 8, 8, 256)},
        {sharpness, claimingImage(static_cast<EPixelType>(0x01080099), 8, 8, 64)},
    };
    for (const auto& [imageNode, claim] : cases)
    {
        SCOPED_TRACE(imageNode.name);
        TestedNode node(imageNode.name);
        loadAoi(node, {1, 1, 5, 5});
        LogCapture log;
        expectReasonAfter(imageNode.prefix, failureOf(node.run({{"Image", claim}}), imageNode.failurePins));
        EXPECT_TRUE(log.entries().empty());
    }
}

} // namespace
