// The converter's settings: typed members and node map drive the same values,
// both refuse what is out of range, and the next conversion obeys them. The
// register description of the map is kept as a reference text, which the schema
// test of the GenICam documents checks too.
#include "../genicam/genapi_test_support.h"
#include "ConversionTestSupport.h"
#include "ConverterRegisterDescription.h"

#include <TarvikUtility/ImageFormatConverter.h>

#include <gmock/gmock.h>

using namespace Tarvik;
using Bytes = std::vector<uint8_t>;

namespace
{

class ConverterSettings : public ::testing::Test
{
protected:
    GenApi::INode* Node(const char* name) { return converter.GetNodeMap()->GetNode(name); }

    // 0x312 in a Mono10 pixel.
    Bytes ConvertMono10()
    {
        return ConversionTestSupport::Converted(converter, {0x12, 0x03}, PixelType_Mono10, 1, 1);
    }

    CImageFormatConverter converter;
};

} // namespace

TEST_F(ConverterSettings, MembersAndMapShowEachOthersWritesAndTheNextConversionObeys)
{
    EXPECT_EQ(GenApi::CEnumerationPtr(Node("OutputPixelFormat"))->ToString(), "BGRa8");
    converter.OutputPixelFormat = PixelType_Mono16;
    EXPECT_EQ(ConvertMono10(), (Bytes{0x12, 0x03}));
    GenApi::CEnumerationPtr(Node("OutputBitAlignment"))->FromString("MsbAligned");
    EXPECT_EQ(converter.OutputBitAlignment.GetValue(), OutputBitAlignment_MsbAligned);
    EXPECT_EQ(ConvertMono10(), (Bytes{0x80, 0xC4}));
    GenApi::CEnumerationPtr(Node("OutputPixelFormat"))->FromString("BGRa8");
    EXPECT_EQ(ConvertMono10(), (Bytes{0xC4, 0xC4, 0xC4, 0xFF}));
    GenApi::CIntegerPtr(Node("OutputPaddingX"))->SetValue(3);
    EXPECT_EQ(converter.GetBufferSizeForConversion(2, 2), 2u * (8 + 3));

    // Integer values, as the nodes set them, in the members and the map; a member
    // write tells whoever watches the feature.
    int paddingChanges = 0;
    GenApi::Register(Node("OutputPaddingX"), [&](GenApi::INode*) { ++paddingChanges; });
    converter.OutputPaddingX = 7;
    EXPECT_GT(paddingChanges, 0);
    converter.InconvertibleEdgeHandling.SetIntValue(1);
    converter.MaxNumThreads = 3;
    EXPECT_EQ(GenApi::CIntegerPtr(Node("OutputPaddingX"))->GetValue(), 7);
    EXPECT_EQ(GenApi::CEnumerationPtr(Node("InconvertibleEdgeHandling"))->ToString(), "Extrapolate");
    EXPECT_EQ(GenApi::CIntegerPtr(Node("MaxNumThreads"))->GetValue(), 3);

    // Every converter has a map of its own.
    CImageFormatConverter other;
    EXPECT_EQ(other.OutputPaddingX.GetValue(), 0);
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
    EXPECT_THROW(converter.MaxNumThreads = 65, GenICam::OutOfRangeException);
    EXPECT_THROW(converter.OutputOrientation.SetIntValue(2), GenICam::OutOfRangeException);
    EXPECT_THAT(failureOf([&] { converter.OutputBitAlignment.SetIntValue(7); }),
                testing::StartsWith("OutOfRangeException: [OutputBitAlignment] value 7"));
}

TEST(ConverterRegisterDescription, MatchesTheReferenceText)
{
    const std::string reference = GenApiTest::ReadDocument("../tarvikutility/ImageFormatConverter.xml");
    ASSERT_FALSE(reference.empty()) << "the reference file is missing";
    EXPECT_EQ(Conversion::BuildConverterRegisterDescription(), reference);
}
