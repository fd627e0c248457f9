// The converter's settings: typed members and node map drive the same values,
// both refuse what is out of range, and the next conversion obeys them.
#include <GCBase/GCException.h>
#include <GenApi/ICategory.h>
#include <GenApi/IEnumeration.h>
#include <GenApi/IInteger.h>
#include <GenApi/INodeMap.h>
#include <GenApi/Pointer.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <gtest/gtest.h>

#include <set>

using namespace Tarvik;
using Bytes = std::vector<uint8_t>;

namespace
{

class ConverterSettings : public ::testing::Test
{
protected:
    GenApi::INode* Node(const char* name) { return converter.GetNodeMap()->GetNode(name); }

    Bytes ConvertMono10(uint16_t value)
    {
        const Bytes source = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8)};
        Bytes target(converter.GetBufferSizeForConversion(1, 1));
        converter.Convert(target.data(), target.size(), source.data(), source.size(), PixelType_Mono10, 1, 1,
                          0);
        return target;
    }

    CImageFormatConverter converter;
};

} // namespace

TEST_F(ConverterSettings, DefaultsArePublishedUnderRoot)
{
    const ImageFormatConverterSettings settings = converter.GetSettings();
    EXPECT_EQ(settings.outputPixelFormat, PixelType_BGRa8);
    EXPECT_EQ(settings.outputPaddingX, 0u);
    EXPECT_EQ(settings.outputOrientation, ImageOrientation_TopDown);
    EXPECT_EQ(settings.outputBitAlignment, OutputBitAlignment_LsbAligned);
    EXPECT_EQ(settings.inconvertibleEdgeHandling, InconvertibleEdgeHandling_SetZero);
    EXPECT_EQ(settings.maxNumThreads, 1u);
    EXPECT_STREQ(converter.InconvertibleEdgeHandling.GetName(), "InconvertibleEdgeHandling");

    GenApi::FeatureList_t features;
    GenApi::CCategoryPtr(Node("Root"))->GetFeatures(features);
    std::set<std::string> names;
    for (GenApi::IValue* feature : features)
        names.insert(feature->GetNode()->GetName().c_str());
    EXPECT_EQ(names,
              (std::set<std::string>{"OutputPixelFormat", "OutputPaddingX", "OutputOrientation",
                                     "OutputBitAlignment", "InconvertibleEdgeHandling", "MaxNumThreads"}));
    EXPECT_EQ(GenApi::CEnumerationPtr(Node("OutputPixelFormat"))->ToString(), "BGRa8");
}

TEST_F(ConverterSettings, MembersAndMapShowEachOthersWritesAndTheNextConversionObeys)
{
    converter.OutputPixelFormat = PixelType_Mono16;
    EXPECT_EQ(ConvertMono10(0x312), (Bytes{0x12, 0x03}));
    GenApi::CEnumerationPtr(Node("OutputBitAlignment"))->FromString("MsbAligned");
    EXPECT_EQ(converter.OutputBitAlignment.GetValue(), OutputBitAlignment_MsbAligned);
    EXPECT_EQ(ConvertMono10(0x312), (Bytes{0x80, 0xC4}));
    GenApi::CEnumerationPtr(Node("OutputPixelFormat"))->FromString("BGRa8");
    EXPECT_EQ(ConvertMono10(0x312), (Bytes{0xC4, 0xC4, 0xC4, 0xFF}));
    GenApi::CIntegerPtr(Node("OutputPaddingX"))->SetValue(3);
    EXPECT_EQ(converter.GetBufferSizeForConversion(2, 2), 2u * (8 + 3));

    // Integer values, as the nodes set them, in the members and the map.
    converter.OutputPaddingX = 7;
    converter.InconvertibleEdgeHandling.SetIntValue(1);
    converter.MaxNumThreads = 3;
    EXPECT_EQ(GenApi::CIntegerPtr(Node("OutputPaddingX"))->GetValue(), 7);
    EXPECT_EQ(GenApi::CEnumerationPtr(Node("InconvertibleEdgeHandling"))->ToString(), "Extrapolate");
    EXPECT_EQ(converter.GetSettings().inconvertibleEdgeHandling, InconvertibleEdgeHandling_Extrapolate);
    EXPECT_EQ(GenApi::CIntegerPtr(Node("MaxNumThreads"))->GetValue(), 3);
}

TEST_F(ConverterSettings, ValuesOutsideTheirRangeOrListAreRefusedAndKeepTheOldValue)
{
    converter.OutputPaddingX = 12;
    EXPECT_THROW(converter.OutputPaddingX = 65536, GenICam::OutOfRangeException);
    EXPECT_THROW(converter.OutputPaddingX = -1, GenICam::OutOfRangeException);
    EXPECT_THROW(GenApi::CIntegerPtr(Node("OutputPaddingX"))->SetValue(70000), GenICam::GenericException);
    EXPECT_EQ(converter.OutputPaddingX.GetValue(), 12);
    EXPECT_THROW(converter.OutputPixelFormat = PixelType_BayerRG8, GenICam::OutOfRangeException);
    EXPECT_THROW(converter.OutputPixelFormat.SetIntValue(PixelType_Mono8 + 1), GenICam::OutOfRangeException);
    EXPECT_THROW(GenApi::CEnumerationPtr(Node("OutputPixelFormat"))->FromString("BayerRG8"),
                 GenICam::GenericException);
    EXPECT_EQ(converter.OutputPixelFormat.GetValue(), PixelType_BGRa8);
    EXPECT_THROW(converter.MaxNumThreads = 0, GenICam::OutOfRangeException);
    EXPECT_THROW(converter.OutputOrientation.SetIntValue(2), GenICam::OutOfRangeException);
    try
    {
        converter.OutputBitAlignment.SetIntValue(7);
        FAIL();
    }
    catch (const GenICam::OutOfRangeException& e)
    {
        EXPECT_NE(std::string(e.GetDescription()).find("[OutputBitAlignment] value 7"), std::string::npos)
            << e.GetDescription();
    }
}

TEST(ImageFormatConverterNodeMaps, EveryConverterHasAMapOfItsOwn)
{
    CImageFormatConverter first;
    CImageFormatConverter second;
    GenApi::CIntegerPtr(first.GetNodeMap()->GetNode("OutputPaddingX"))->SetValue(5);
    EXPECT_EQ(first.OutputPaddingX.GetValue(), 5);
    EXPECT_EQ(second.OutputPaddingX.GetValue(), 0);
}

TEST(ImageFormatConverterFormats, SupportedFormatsFollowThePixelTable)
{
    EXPECT_TRUE(CImageFormatConverter::IsSupportedInputFormat(PixelType_YUV411_8_UYYVYY));
    EXPECT_FALSE(CImageFormatConverter::IsSupportedInputFormat(PixelType_Undefined));
    EXPECT_TRUE(CImageFormatConverter::IsSupportedOutputFormat(PixelType_RGB16));
    EXPECT_FALSE(CImageFormatConverter::IsSupportedOutputFormat(PixelType_BGR8));
}
