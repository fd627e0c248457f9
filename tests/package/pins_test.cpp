// Every node's pins as the graph shows them, in the order of declaring: name, text, type,
// and whether the input is generic. One table for the six nodes.
#include "node_test_support.h"

#include <TarvikDataProcessingCore/core/IArray.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikViewerDataTypes2/CompressionDescriptor.h>
#include <TarvikViewerDataTypes2/GrabResult.h>
#include <TarvikViewerDataTypes2/NoValue.h>

using namespace NodeTestSupport;

namespace
{

struct Pin
{
    const char* name;
    const char* description;
    Utils::TypeInfo type;
    bool hasDefault = false;
    bool generic = false; // configurable, with NoValue as default
};

struct NodePins
{
    const char* node;
    bool synchronous;
    std::vector<Pin> inputs;
    std::vector<Pin> outputs;
};

void expectPins(const std::vector<Core::PinDescriptor>& actual, const std::vector<Pin>& expected, bool output)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i)
    {
        SCOPED_TRACE(expected[i].name);
        EXPECT_EQ(actual[i].name, expected[i].name);
        EXPECT_EQ(actual[i].description, expected[i].description);
        EXPECT_EQ(actual[i].type, expected[i].type);
        EXPECT_EQ(actual[i].hasDefault, expected[i].hasDefault || expected[i].generic);
        EXPECT_EQ(actual[i].configurable, expected[i].generic);
        EXPECT_EQ(actual[i].flag, output);
        EXPECT_EQ(actual[i].limit, ~uint64_t{0});
        if (expected[i].generic)
        {
            EXPECT_EQ(actual[i].defaultValue.getTypeInfo(), Utils::TypeInfo::get<NoValue>(true));
        }
    }
}

TEST(PackagePins, EveryNodeDeclaresItsPinsInOrder)
{
    const auto image = Utils::TypeInfo::get<Core::IImage>(true);
    const auto integer = Utils::TypeInfo::get<Core::IInteger>(true);
    const auto value = Utils::TypeInfo::get<Core::IValue>(true);
    const auto histogram = Utils::TypeInfo::get<Core::IArrayT<Core::IInteger, void>>(true);
    const Pin genericInput{"GenericInput", "A generic input, allowing many data types.", value, true, true};
    const Pin genericOutput{"GenericOutput", "A generic output", value};
    const NodePins nodes[] = {
        {"Converter",
         true,
         {{"Image", "Image input", image}},
         {{"Image", "Original image output", image}, {"ImageConverted", "Displayable image output", image}}},
        {"Decompressor",
         true,
         {{"GrabResult", "The grab result", Utils::TypeInfo::get<GrabResult>(true)},
          {"RepairHintPayloadSizeStreamGrabber",
           "The payload size reported by the stream grabber. Used as image repair hint.", integer},
          {"RepairHintPixelFormat", "The pixel format. Used as image repair hint.",
           Utils::TypeInfo::get<Core::IString>(true), true},
          {"RepairHintPayloadSizeCamera",
           "The payload size reported by the camera. Used as image repair hint.", integer},
          {"RepairHintWidth", "The image width. Used as image repair hint.", integer, true},
          {"RepairHintHeight", "The image height. Used as image repair hint.", integer, true},
          {"CompressionDescriptor", "The compression descriptor",
           Utils::TypeInfo::get<CompressionDescriptor>(true), true}},
         {{"Image", "The decompressed image", image}}},
        {"Decoupler", false, {genericInput}, {genericOutput}},
        {"Gate", true, {genericInput}, {genericOutput}},
        {"HistogramExtractor",
         true,
         {{"Image", "Image input", image}},
         {{"Red", "Red channel output", histogram},
          {"Green", "Green channel output", histogram},
          {"Blue", "Blue channel output", histogram},
          {"Lum", "Lum channel output", histogram}}},
        {"SharpnessExtractor",
         true,
         {{"Image", "Image input", image}},
         {{"Sharpness", "Sharpness", Utils::TypeInfo::get<Core::IFloat>(true)}}},
    };
    PackageLoader package{builtPackagePath()};
    for (const NodePins& expected : nodes)
    {
        SCOPED_TRACE(expected.node);
        const std::shared_ptr<Core::INode> node = package.createNode(expected.node);
        EXPECT_EQ(node->isSynchronous(), expected.synchronous);
        expectPins(node->getInputDescriptors(), expected.inputs, false);
        expectPins(node->getOutputDescriptors(), expected.outputs, true);
    }
}

TEST(PackagePins, DecompressorHintsDefaultToNothingKnown)
{
    PackageLoader package{builtPackagePath()};
    const auto inputs = package.createNode("Decompressor")->getInputDescriptors();
    EXPECT_EQ(inputs.at(2).defaultValue.get<Core::IString>(true)->getValue(), "Undefined");
    EXPECT_EQ(inputs.at(4).defaultValue.get<Core::IInteger>(true)->getValue(), 0);
    EXPECT_EQ(inputs.at(5).defaultValue.get<Core::IInteger>(true)->getValue(), 0);
}

// The generic output takes over the configured type of the input, and IValue again without it.
TEST(PackagePins, GenericOutputsFollowTheConfiguredInput)
{
    PackageLoader package{builtPackagePath()};
    const auto integer = Utils::TypeInfo::get<Core::IInteger>(true);
    for (const char* name : {"Decoupler", "Gate"})
    {
        SCOPED_TRACE(name);
        const std::shared_ptr<Core::INode> node = package.createNode(name);
        node->configureInputType("GenericInput", integer);
        EXPECT_TRUE(node->isConfigured("GenericInput"));
        ASSERT_EQ(node->getOutputDescriptors().size(), 1u);
        EXPECT_EQ(node->getOutputDescriptors()[0].type, integer);
        EXPECT_EQ(node->getOutputDescriptors()[0].description, "A generic output");
        node->unconfigureInputType("GenericInput");
        EXPECT_FALSE(node->isConfigured("GenericInput"));
        EXPECT_EQ(node->getOutputDescriptors()[0].type, Utils::TypeInfo::get<Core::IValue>(true));
        EXPECT_THROW(node->configureInputType("GenericOutput", integer), GenICam::InvalidArgumentException);
        EXPECT_EQ(node->getOutputDescriptors().size(), 1u);
    }
}

} // namespace
