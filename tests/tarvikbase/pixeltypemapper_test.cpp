#include <TarvikBase/PixelTypeInfo.h>
#include <TarvikBase/PixelTypeMapper.h>

#include <gtest/gtest.h>

using namespace Tarvik;

TEST(CPixelTypeMapper, EveryTableNameMapsBothWays)
{
    for (const PixelTypeInfo& info : PixelTypeTable())
    {
        EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName(info.name), info.type) << info.name;
        EXPECT_EQ(CPixelTypeMapper::GetNameByTarvikPixelType(info.type), GenICam::gcstring(info.name));
    }
}

TEST(CPixelTypeMapper, KnownNamesGiveTheirCodes)
{
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("Mono8"), 0x01080001u);
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("BGRa8"), 0x02200017u);
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("BayerRG8"), 0x01080009u);
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("BayerBG12p"), 0x010C0053u);
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("BayerGR10p"), 0x010A0056u);
}

TEST(CPixelTypeMapper, OlderNamesAreAcceptedAndTheCurrentNameComesBack)
{
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("RGB8Packed"), PixelType_RGB8);
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("YUV422Packed"), PixelType_YUV422_8_UYVY);
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("Mono4packed"), 0x8104000Eu);
    EXPECT_EQ(CPixelTypeMapper::GetNameByTarvikPixelType(PixelType_YUV422_8_UYVY),
              GenICam::gcstring("YUV422_8_UYVY"));
}

TEST(CPixelTypeMapper, UndefinedAndUnknownNames)
{
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("Undefined"), 0xFFFFFFFFu);
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName("mono8"), PixelType_Undefined);
    EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName(""), PixelType_Undefined);
    EXPECT_EQ(CPixelTypeMapper::GetNameByTarvikPixelType(PixelType_Undefined),
              GenICam::gcstring("Undefined"));
    EXPECT_TRUE(CPixelTypeMapper::GetNameByTarvikPixelType(static_cast<EPixelType>(0x01080002)).empty());
}
