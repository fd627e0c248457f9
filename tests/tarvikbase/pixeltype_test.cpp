#include <TarvikBase/PixelType.h>
#include <TarvikBase/PixelTypeInfo.h>

#include <GCBase/GCException.h>
#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using namespace Tarvik;

namespace
{

using PinnedCode = std::pair<uint32_t, const char*>;

// The codes and names the image nodes use.
const PinnedCode kNodeCodes[] = {
    {0x01080001, "Mono8"},    {0x01100007, "Mono16"},
    {0x8101000C, "Mono1p"},   {0x8102000D, "Mono2p"},
    {0x8104000E, "Mono4p"},   {0x010C0004, "Mono10Packed"},
    {0x010A0046, "Mono10p"},  {0x010C0006, "Mono12Packed"},
    {0x010C0047, "Mono12p"},  {0x02180014, "RGB8"},
    {0x02180015, "BGR8"},     {0x02300033, "RGB16"},
    {0x02200017, "BGRa8"},    {0x0210001F, "YUV422_8_UYVY"},
    {0x02100032, "YUV422_8"}, {0x020C001E, "YUV411_8_UYYVYY"},
};

// The 28 Bayer codes: four phases of 8, 10, 12, 16, 12Packed, 10p, 12p.
const PinnedCode kBayerCodes[] = {
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

// The depth a name ends with: "YUV422_8" is 8 bits, "Mono10Packed" 10.
uint32_t DepthInName(std::string_view name)
{
    const size_t end = name.find_last_of("0123456789") + 1;
    const size_t begin = name.find_last_not_of("0123456789", end - 1) + 1;
    return static_cast<uint32_t>(std::stoi(std::string(name.substr(begin, end - begin))));
}

} // namespace

TEST(PixelTypeTable, PinnedCodesHaveTheirNamesAndDepths)
{
    size_t bayerEntries = 0;
    for (const PixelTypeInfo& info : PixelTypeTable())
        bayerEntries += info.family == PixelFamily::Bayer;
    EXPECT_EQ(bayerEntries, 28u);
    std::vector<PinnedCode> pinned(std::begin(kNodeCodes), std::end(kNodeCodes));
    pinned.insert(pinned.end(), std::begin(kBayerCodes), std::end(kBayerCodes));
    for (const auto& [code, name] : pinned)
    {
        SCOPED_TRACE(name);
        const PixelTypeInfo* info = FindPixelTypeInfo(static_cast<EPixelType>(code));
        ASSERT_NE(info, nullptr);
        EXPECT_STREQ(info->name, name);
        EXPECT_EQ(BitDepth(info->type), DepthInName(name));
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
        EXPECT_EQ((info.type >> 16) & 0xFF, BitPerPixel(info.type));
        const bool monoBit = (info.type & 0x01000000u) != 0;
        EXPECT_EQ(monoBit, info.family == PixelFamily::Mono || info.family == PixelFamily::Bayer);
        EXPECT_EQ((info.type & 0x02000000u) != 0, !monoBit);
        const std::string_view name = info.name;
        EXPECT_EQ(info.family == PixelFamily::Bayer, name.starts_with("Bayer"));
        EXPECT_EQ(info.family == PixelFamily::YUV, name.starts_with("YUV"));
        EXPECT_LE(info.bitDepth, 16u);
        EXPECT_STREQ(FindPixelTypeInfo(info.type)->name, info.name);
    }
}

// Unknown codes are found nowhere, and the arithmetic refuses them.
TEST(PixelTypeTable, UnknownCodesAreNotFoundAndHaveNoLayout)
{
    for (uint32_t code : {0xFFFFFFFFu, 0u, 0x01080000u, 0x01080002u, 0x0230004Cu})
    {
        const auto type = static_cast<EPixelType>(code);
        SCOPED_TRACE(code);
        EXPECT_EQ(FindPixelTypeInfo(type), nullptr);
        EXPECT_EQ(BitPerPixel(type), 0u);
        EXPECT_EQ(BitDepth(type), 0u);
        EXPECT_FALSE(IsKnownPixelType(type));
        size_t stride = 11;
        EXPECT_FALSE(ComputeStride(stride, type, 10, 0));
        EXPECT_EQ(stride, 11u);
        EXPECT_THROW(ComputeBufferSize(type, 10, 10, 0), GenICam::InvalidArgumentException);
        EXPECT_THROW(ComputePaddingX(100, type, 10), GenICam::InvalidArgumentException);
    }
}

TEST(PixelTypeArithmetic, RowsRoundUpToWholeBytesAndThePaddingIsRecovered)
{
    struct StrideCase
    {
        EPixelType type;
        uint32_t width;
        size_t paddingX;
        size_t stride;
    };
    const StrideCase cases[] = {
        {PixelType_Mono8, 641, 0, 641},       {PixelType_Mono8, 640, 16, 656},
        {PixelType_Mono12, 3, 2, 8},          {PixelType_Mono1p, 9, 0, 2},
        {PixelType_Mono2p, 5, 1, 3},          {PixelType_Mono4p, 3, 0, 2},
        {PixelType_Mono10p, 4, 0, 5},         {PixelType_Mono10p, 5, 3, 10},
        {PixelType_Mono12p, 3, 0, 5},         {PixelType_Mono12Packed, 1, 0, 2},
        {PixelType_BayerRG12Packed, 4, 0, 6}, {PixelType_YUV422_8_UYVY, 3, 0, 6},
        {PixelType_YUV411_8_UYYVYY, 3, 0, 5}, {PixelType_RGB10p, 3, 0, 12},
        {PixelType_BGRa8, 7, 4, 32},          {PixelType_RGB12_Planar, 10, 2, 22},
        {PixelType_Mono8, 0, 5, 5},
    };
    for (const StrideCase& c : cases)
    {
        SCOPED_TRACE(testing::Message() << c.type << " width " << c.width);
        size_t stride = 0;
        ASSERT_TRUE(ComputeStride(stride, c.type, c.width, c.paddingX));
        EXPECT_EQ(stride, c.stride);
        EXPECT_EQ(ComputePaddingX(stride, c.type, c.width), c.paddingX);
    }
    EXPECT_THROW(ComputePaddingX(5, PixelType_Mono16, 3), GenICam::InvalidArgumentException)
        << "a stride shorter than the row";
}

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
