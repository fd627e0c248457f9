// The converter's node map drives the same settings as its typed members.
#include <GCBase/GCException.h>
#include <GenApi/ICategory.h>
#include <GenApi/IEnumEntry.h>
#include <GenApi/IEnumeration.h>
#include <GenApi/IInteger.h>
#include <GenApi/INode.h>
#include <GenApi/INodeMap.h>
#include <GenApi/Pointer.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <gtest/gtest.h>

#include <set>

using namespace Tarvik;

namespace
{

class ImageFormatConverterNodeMap : public ::testing::Test
{
protected:
    GenApi::INode* Node(const char* name) { return converter.GetNodeMap()->GetNode(name); }

    std::vector<uint8_t> ConvertMono10(uint16_t value)
    {
        const std::vector<uint8_t> source = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8)};
        std::vector<uint8_t> target(converter.GetBufferSizeForConversion(1, 1));
        converter.Convert(target.data(), target.size(), source.data(), source.size(), PixelType_Mono10, 1, 1,
                          0);
        return target;
    }

    CImageFormatConverter converter;
};

} // namespace

TEST_F(ImageFormatConverterNodeMap, PublishesEverySettingUnderRoot)
{
    GenApi::INodeMap* nodeMap = converter.GetNodeMap();
    ASSERT_NE(nodeMap, nullptr);
    EXPECT_EQ(converter.GetNodeMap(), nodeMap);
    GenApi::CCategoryPtr root = nodeMap->GetNode("Root");
    ASSERT_TRUE(root.IsValid());
    GenApi::FeatureList_t features;
    root->GetFeatures(features);
    std::set<std::string> names;
    for (GenApi::IValue* feature : features)
        names.insert(feature->GetNode()->GetName().c_str());
    EXPECT_EQ(names,
              (std::set<std::string>{"OutputPixelFormat", "OutputPaddingX", "OutputOrientation",
                                     "OutputBitAlignment", "InconvertibleEdgeHandling", "MaxNumThreads"}));
    GenApi::CEnumerationPtr format = Node("OutputPixelFormat");
    ASSERT_TRUE(format.IsValid());
    EXPECT_EQ(format->GetIntValue(), PixelType_BGRa8);
    EXPECT_EQ(format->ToString(), GenICam::gcstring("BGRa8"));
}

TEST_F(ImageFormatConverterNodeMap, AWriteThroughTheMapChangesTheNextConversion)
{
    converter.OutputPixelFormat = PixelType_Mono16;
    EXPECT_EQ(ConvertMono10(0x312), (std::vector<uint8_t>{0x12, 0x03}));

    GenApi::CEnumerationPtr alignment = Node("OutputBitAlignment");
    alignment->FromString("MsbAligned");
    EXPECT_EQ(converter.OutputBitAlignment.GetValue(), OutputBitAlignment_MsbAligned);
    EXPECT_EQ(ConvertMono10(0x312), (std::vector<uint8_t>{0x80, 0xC4}));

    GenApi::CEnumerationPtr format = Node("OutputPixelFormat");
    format->FromString("BGRa8");
    EXPECT_EQ(ConvertMono10(0x312), (std::vector<uint8_t>{0xC4, 0xC4, 0xC4, 0xFF}));

    GenApi::CIntegerPtr padding = Node("OutputPaddingX");
    padding->SetValue(3);
    EXPECT_EQ(converter.GetBufferSizeForConversion(2, 2), 2u * (8 + 3));
}

TEST_F(ImageFormatConverterNodeMap, TypedMembersShowInTheMap)
{
    GenApi::CIntegerPtr padding = Node("OutputPaddingX");
    GenApi::CEnumerationPtr edges = Node("InconvertibleEdgeHandling");
    GenApi::CIntegerPtr threads = Node("MaxNumThreads");
    converter.OutputPaddingX = 7;
    converter.InconvertibleEdgeHandling.SetIntValue(1);
    converter.MaxNumThreads = 1;
    EXPECT_EQ(padding->GetValue(), 7);
    EXPECT_EQ(edges->ToString(), GenICam::gcstring("Extrapolate"));
    EXPECT_EQ(threads->GetValue(), 1);
    EXPECT_EQ(padding->GetMax(), 65535);
}

TEST_F(ImageFormatConverterNodeMap, WritesOutsideTheRangeAreRefusedByTheMap)
{
    GenApi::CIntegerPtr padding = Node("OutputPaddingX");
    GenApi::CEnumerationPtr format = Node("OutputPixelFormat");
    EXPECT_THROW(padding->SetValue(70000), GenICam::GenericException);
    EXPECT_THROW(format->SetIntValue(PixelType_BayerRG8), GenICam::GenericException);
    EXPECT_THROW(format->FromString("BayerRG8"), GenICam::GenericException);
    EXPECT_EQ(converter.OutputPaddingX.GetValue(), 0);
    EXPECT_EQ(converter.OutputPixelFormat.GetValue(), PixelType_BGRa8);
}

TEST_F(ImageFormatConverterNodeMap, FeaturesCanBeHidden)
{
    GenApi::INode* padding = Node("OutputPaddingX");
    ASSERT_NE(padding, nullptr);
    padding->ImposeVisibility(GenApi::Invisible);
    EXPECT_EQ(padding->GetVisibility(), GenApi::Invisible);
    EXPECT_EQ(Node("OutputOrientation")->GetVisibility(), GenApi::Beginner);
}

TEST(ImageFormatConverterNodeMapLifetime, EveryConverterHasAMapOfItsOwn)
{
    CImageFormatConverter first;
    CImageFormatConverter second;
    GenApi::CIntegerPtr firstPadding = first.GetNodeMap()->GetNode("OutputPaddingX");
    firstPadding->SetValue(5);
    EXPECT_EQ(first.OutputPaddingX.GetValue(), 5);
    EXPECT_EQ(second.OutputPaddingX.GetValue(), 0);
    EXPECT_NE(first.GetNodeMap(), second.GetNodeMap());
}
