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
