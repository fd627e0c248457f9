// The typed members: defaults, ranges, and that the next conversion obeys them.
#include <GCBase/GCException.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <gtest/gtest.h>

using namespace Tarvik;

TEST(ImageFormatConverterSettings, DefaultsAreDocumented)
{
    const CImageFormatConverter converter;
    const ImageFormatConverterSettings settings = converter.GetSettings();
    EXPECT_EQ(settings.outputPixelFormat, PixelType_BGRa8);
    EXPECT_EQ(settings.outputPaddingX, 0u);
    EXPECT_EQ(settings.outputOrientation, ImageOrientation_TopDown);
    EXPECT_EQ(settings.outputBitAlignment, OutputBitAlignment_LsbAligned);
    EXPECT_EQ(settings.inconvertibleEdgeHandling, InconvertibleEdgeHandling_SetZero);
    EXPECT_EQ(settings.maxNumThreads, 1u);
    EXPECT_STREQ(converter.InconvertibleEdgeHandling.GetName(), "InconvertibleEdgeHandling");
}

TEST(ImageFormatConverterSettings, IntegerValuesOneAsTheNodesSetThem)
{
    CImageFormatConverter converter;
    converter.InconvertibleEdgeHandling.SetIntValue(1);
    converter.OutputBitAlignment.SetIntValue(1);
    converter.MaxNumThreads.SetValue(1);
    EXPECT_EQ(converter.InconvertibleEdgeHandling.GetValue(), InconvertibleEdgeHandling_Extrapolate);
    EXPECT_EQ(converter.OutputBitAlignment.GetValue(), OutputBitAlignment_MsbAligned);
    EXPECT_EQ(converter.GetSettings().maxNumThreads, 1u);
}

TEST(ImageFormatConverterSettings, ValuesOutsideTheirRangeOrListAreRefusedAndKeepTheOldValue)
{
    CImageFormatConverter converter;
    converter.OutputPaddingX = 12;
    EXPECT_THROW(converter.OutputPaddingX = 65536, GenICam::OutOfRangeException);
    EXPECT_THROW(converter.OutputPaddingX = -1, GenICam::OutOfRangeException);
    EXPECT_EQ(converter.OutputPaddingX.GetValue(), 12);
    EXPECT_THROW(converter.OutputPixelFormat = PixelType_BayerRG8, GenICam::OutOfRangeException);
    EXPECT_THROW(converter.OutputPixelFormat.SetIntValue(PixelType_Mono8 + 1), GenICam::OutOfRangeException);
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

TEST(ImageFormatConverterSettings, TheNextConversionUsesTheNewValues)
{
    CImageFormatConverter converter;
    const std::vector<uint8_t> source = {0x12, 0x03}; // Mono10 value 0x312
    converter.OutputPixelFormat = PixelType_Mono16;
    std::vector<uint8_t> target(2);
    converter.Convert(target.data(), target.size(), source.data(), source.size(), PixelType_Mono10, 1, 1, 0);
    EXPECT_EQ(target, (std::vector<uint8_t>{0x12, 0x03}));
    converter.OutputBitAlignment = OutputBitAlignment_MsbAligned;
    converter.Convert(target.data(), target.size(), source.data(), source.size(), PixelType_Mono10, 1, 1, 0);
    EXPECT_EQ(target, (std::vector<uint8_t>{0x80, 0xC4}));
    converter.OutputPixelFormat = PixelType_Mono8;
    EXPECT_EQ(converter.GetBufferSizeForConversion(3, 2), 6u);
    converter.OutputPaddingX = 2;
    EXPECT_EQ(converter.GetBufferSizeForConversion(3, 2), 10u);
}

TEST(ImageFormatConverterSettings, SupportedFormatsFollowThePixelTable)
{
    EXPECT_TRUE(CImageFormatConverter::IsSupportedInputFormat(PixelType_BayerBG12p));
    EXPECT_TRUE(CImageFormatConverter::IsSupportedInputFormat(PixelType_YUV411_8_UYYVYY));
    EXPECT_FALSE(CImageFormatConverter::IsSupportedInputFormat(PixelType_Undefined));
    EXPECT_TRUE(CImageFormatConverter::IsSupportedOutputFormat(PixelType_RGB16));
    EXPECT_FALSE(CImageFormatConverter::IsSupportedOutputFormat(PixelType_BGR8));
}
