#include <TarvikBase/PixelType.h>
#include <TarvikBase/PixelTypeInfo.h>

#include <GCBase/GCException.h>
#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>

using namespace Tarvik;

namespace
{

struct QuotedType
{
    uint32_t code;
    const char* name;
    uint32_t bitsPerPixel;
    uint32_t bitDepth;
    PixelFamily family;
};

// The codes and names the image nodes use, with what the nodes rely on.
const QuotedType kQuotedTypes[] = {
    {0x01080001, "Mono8", 8, 8, PixelFamily::Mono},
    {0x01100007, "Mono16", 16, 16, PixelFamily::Mono},
    {0x8101000C, "Mono1p", 1, 1, PixelFamily::Mono},
    {0x8102000D, "Mono2p", 2, 2, PixelFamily::Mono},
    {0x8104000E, "Mono4p", 4, 4, PixelFamily::Mono},
    {0x010C0004, "Mono10Packed", 12, 10, PixelFamily::Mono},
    {0x010A0046, "Mono10p", 10, 10, PixelFamily::Mono},
    {0x010C0006, "Mono12Packed", 12, 12, PixelFamily::Mono},
    {0x010C0047, "Mono12p", 12, 12, PixelFamily::Mono},
    {0x02180014, "RGB8", 24, 8, PixelFamily::Color},
    {0x02180015, "BGR8", 24, 8, PixelFamily::Color},
    {0x02300033, "RGB16", 48, 16, PixelFamily::Color},
    {0x02200017, "BGRa8", 32, 8, PixelFamily::Color},
    {0x0210001F, "YUV422_8_UYVY", 16, 8, PixelFamily::YUV},
    {0x02100032, "YUV422_8", 16, 8, PixelFamily::YUV},
    {0x020C001E, "YUV411_8_UYYVYY", 12, 8, PixelFamily::YUV},
};

// The 28 Bayer codes: four phases of 8, 10, 12, 16, 12Packed, 10p, 12p; the name gives the depth.
const std::pair<uint32_t, const char*> kBayerCodes[] = {
    {0x01080008, "BayerGR8"},        {0x01080009, "BayerRG8"},        {0x0108000A, "BayerGB8"},
    {0x0108000B, "BayerBG8"},        {0x0110000C, "BayerGR10"},       {0x0110000D, "BayerRG10"},
    {0x0110000E, "BayerGB10"},       {0x0110000F, "BayerBG10"},       {0x01100010, "BayerGR12"},
    {0x01100011, "BayerRG12"},       {0x01100012, "BayerGB12"},       {0x01100013, "BayerBG12"},
    {0x0110002E, "BayerGR16"},       {0x0110002F, "BayerRG16"},       {0x01100030, "BayerGB16"},
    {0x01100031, "BayerBG16"},       {0x010C002A, "BayerGR12Packed"}, {0x010C002B, "BayerRG12Packed"},
    {0x010C002C, "BayerGB12Packed"}, {0x010C002D, "BayerBG12Packed"}, {0x010A0052, "BayerBG10p"},
    {0x010A0054, "BayerGB10p"},      {0x010A0056, "BayerGR10p"},      {0x010A0058, "BayerRG10p"},
    {0x010C0053, "BayerBG12p"},      {0x010C0055, "BayerGB12p"},      {0x010C0057, "BayerGR12p"},
    {0x010C0059, "BayerRG12p"},
};

} // namespace

TEST(PixelTypeTable, QuotedCodesHaveTheirNamesSizesAndFamily)
{
    for (const QuotedType& quoted : kQuotedTypes)
    {
        SCOPED_TRACE(quoted.name);
        const PixelTypeInfo* info = FindPixelTypeInfo(static_cast<EPixelType>(quoted.code));
        ASSERT_NE(info, nullptr);
        EXPECT_STREQ(info->name, quoted.name);
        EXPECT_EQ(BitPerPixel(info->type), quoted.bitsPerPixel);
        EXPECT_EQ(BitDepth(info->type), quoted.bitDepth);
        EXPECT_EQ(info->family, quoted.family);
    }
}

TEST(PixelTypeTable, HoldsAllTwentyEightBayerCodes)
{
    size_t bayerEntries = 0;
    for (const PixelTypeInfo& info : PixelTypeTable())
        bayerEntries += info.family == PixelFamily::Bayer;
    EXPECT_EQ(bayerEntries, 28u);
    for (const auto& [code, name] : kBayerCodes)
    {
        SCOPED_TRACE(name);
        const PixelTypeInfo* info = FindPixelTypeInfo(static_cast<EPixelType>(code));
        ASSERT_NE(info, nullptr);
        EXPECT_STREQ(info->name, name);
        EXPECT_EQ(info->family, PixelFamily::Bayer);
        EXPECT_EQ(BitDepth(info->type), static_cast<uint32_t>(std::stoi(name + 7)));
    }
}

TEST(PixelTypeTable, EntriesAgreeWithTheirCodeBits)
{
    std::set<uint32_t> codes;
    std::set<std::string> names;
    for (const PixelTypeInfo& info : PixelTypeTable())
    {
        SCOPED_TRACE(info.name);
        EXPECT_TRUE(codes.insert(info.type).second) << "code listed twice";
        EXPECT_TRUE(names.insert(info.name).second) << "name listed twice";
        EXPECT_EQ((info.type >> 16) & 0xFF, info.bitsPerPixel);
        const bool monoBit = (info.type & 0x01000000u) != 0;
        EXPECT_EQ(monoBit, info.family == PixelFamily::Mono || info.family == PixelFamily::Bayer);
        EXPECT_EQ((info.type & 0x02000000u) != 0, !monoBit);
        EXPECT_LE(info.bitDepth, 16u);
        EXPECT_STREQ(FindPixelTypeInfo(info.type)->name, info.name);
    }
}

TEST(PixelTypeTable, UnknownCodesAreNotFound)
{
    for (uint32_t code : {0xFFFFFFFFu, 0u, 0x01080000u, 0x01080002u, 0x0230004Cu})
    {
        EXPECT_EQ(FindPixelTypeInfo(static_cast<EPixelType>(code)), nullptr) << code;
        EXPECT_EQ(BitPerPixel(static_cast<EPixelType>(code)), 0u);
        EXPECT_EQ(BitDepth(static_cast<EPixelType>(code)), 0u);
        EXPECT_FALSE(IsKnownPixelType(static_cast<EPixelType>(code)));
    }
}

struct StrideCase
{
    EPixelType type;
    uint32_t width;
    size_t paddingX;
    size_t stride;
};

class PixelTypeStride : public ::testing::TestWithParam<StrideCase>
{
};

TEST_P(PixelTypeStride, RoundsRowsUpToWholeBytesAndRecoversThePadding)
{
    const StrideCase& c = GetParam();
    size_t stride = 0;
    ASSERT_TRUE(ComputeStride(stride, c.type, c.width, c.paddingX));
    EXPECT_EQ(stride, c.stride);
    EXPECT_EQ(ComputePaddingX(stride, c.type, c.width), c.paddingX);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PixelTypeStride,
    ::testing::Values(StrideCase{PixelType_Mono8, 641, 0, 641}, StrideCase{PixelType_Mono8, 640, 16, 656},
                      StrideCase{PixelType_Mono12, 3, 2, 8}, StrideCase{PixelType_Mono1p, 9, 0, 2},
                      StrideCase{PixelType_Mono2p, 5, 1, 3}, StrideCase{PixelType_Mono4p, 3, 0, 2},
                      StrideCase{PixelType_Mono10p, 4, 0, 5}, StrideCase{PixelType_Mono10p, 5, 3, 10},
                      StrideCase{PixelType_Mono12p, 3, 0, 5}, StrideCase{PixelType_Mono12Packed, 1, 0, 2},
                      StrideCase{PixelType_BayerRG12Packed, 4, 0, 6},
                      StrideCase{PixelType_YUV422_8_UYVY, 3, 0, 6},
                      StrideCase{PixelType_YUV411_8_UYYVYY, 3, 0, 5}, StrideCase{PixelType_RGB10p, 3, 0, 12},
                      StrideCase{PixelType_BGRa8, 7, 4, 32}, StrideCase{PixelType_RGB12_Planar, 10, 2, 22},
                      StrideCase{PixelType_Mono8, 0, 5, 5}));

TEST(PixelTypeArithmetic, BufferSizeCountsEveryRowAndPlaneAndRefusesOverflow)
{
    EXPECT_EQ(ComputeBufferSize(PixelType_BGRa8, 1920, 1200, 0), 1920u * 1200u * 4u);
    EXPECT_EQ(ComputeBufferSize(PixelType_Mono8, 5, 3, 3), 24u);
    EXPECT_EQ(ComputeBufferSize(PixelType_RGB8_Planar, 10, 4, 2), 3u * 12u * 4u);
    EXPECT_EQ(ComputeBufferSize(PixelType_Mono12p, 3, 2, 0), 10u);
    EXPECT_EQ(ComputeBufferSize(PixelType_Mono8, 7, 0, 0), 0u);

    // Overflow is refused, not wrapped.
    constexpr size_t kMax = std::numeric_limits<size_t>::max();
    size_t stride = 7;
    EXPECT_THROW(ComputeStride(stride, PixelType_Mono16, 2, kMax), GenICam::OutOfRangeException);
    EXPECT_EQ(stride, 7u);
    EXPECT_THROW(ComputeBufferSize(PixelType_Mono8, 1, 2, kMax / 2), GenICam::OutOfRangeException);
    EXPECT_THROW(ComputeBufferSize(PixelType_RGB16_Planar, 0xFFFFFFFFu, 0xFFFFFFFFu, kMax / 4),
                 GenICam::OutOfRangeException);
    EXPECT_THROW(ComputeBufferSize(PixelType_Mono16, 0xFFFFFFFFu, 0xFFFFFFFFu, 0),
                 GenICam::OutOfRangeException);
    // An image just below the limit is computed exactly.
    EXPECT_EQ(ComputeBufferSize(PixelType_Mono8, 0xFFFFFFFFu, 0xFFFFFFFFu, 0), 0xFFFFFFFFull * 0xFFFFFFFFull);
}

TEST(PixelTypeArithmetic, UnknownTypesAndShortStridesAreRefused)
{
    size_t stride = 11;
    EXPECT_FALSE(ComputeStride(stride, PixelType_Undefined, 10, 0));
    EXPECT_EQ(stride, 11u);
    EXPECT_THROW(ComputeBufferSize(PixelType_Undefined, 10, 10, 0), GenICam::InvalidArgumentException);
    EXPECT_THROW(ComputePaddingX(100, static_cast<EPixelType>(0x01080002), 10),
                 GenICam::InvalidArgumentException);
    EXPECT_THROW(ComputePaddingX(5, PixelType_Mono16, 3), GenICam::InvalidArgumentException)
        << "a stride shorter than the row";
}
