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

// Older names give today's code, whose name comes back by the table above; a name
// in another case is unknown.
TEST(CPixelTypeMapper, OlderNamesAreAcceptedAndUnknownNamesAreUndefined)
{
    const std::pair<const char*, uint32_t> names[] = {
        {"RGB8Packed", PixelType_RGB8}, {"YUV422Packed", PixelType_YUV422_8_UYVY},
        {"Mono4packed", 0x8104000Eu},   {"Undefined", 0xFFFFFFFFu},
        {"mono8", PixelType_Undefined}, {"", PixelType_Undefined},
    };
    for (const auto& [name, code] : names)
        EXPECT_EQ(CPixelTypeMapper::GetTarvikPixelTypeByName(name), code) << name;
    EXPECT_EQ(CPixelTypeMapper::GetNameByTarvikPixelType(PixelType_Undefined),
              GenICam::gcstring("Undefined"));
    EXPECT_TRUE(CPixelTypeMapper::GetNameByTarvikPixelType(static_cast<EPixelType>(0x01080002)).empty());
}
