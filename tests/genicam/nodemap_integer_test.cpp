// Integer features: signed registers, limits from registers and from the
// document, the increment grid, byte order and caching.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

#include <limits>

using namespace GenApi;
using GenApiTest::CMemoryPort;
using GenApiTest::ErrorText;

namespace
{

class NodeMapInteger : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ref = GenApiTest::CreateMap(GenApiTest::ReadDocument("signed_integer.xml"));
        ASSERT_TRUE(ref._Connect(&port));
        port.Poke<int64_t>(0x8, -100); // OffsetMin
        port.Poke<int64_t>(0x10, 100); // OffsetMax
        port.Poke<int64_t>(0x18, 4);   // OffsetInc
        offset = ref._GetNode("Offset");
        width = ref._GetNode("Width");
        temperature = ref._GetNode("Temperature");
    }

    CNodeMapRef ref;
    CMemoryPort port;
    CIntegerPtr offset;
    CIntegerPtr width;
    CIntegerPtr temperature;
};

TEST_F(NodeMapInteger, SignedValuesAndLimitsComeFromTheRegisters)
{
    EXPECT_EQ(offset->GetMin(), -100);
    EXPECT_EQ(offset->GetInc(), 4);
    port.Poke<int64_t>(0x10, 60);
    EXPECT_EQ(offset->GetMax(), 60) << "NoCache limits are read again";
    offset->SetValue(-96);
    EXPECT_EQ(port.Peek<int64_t>(0x0), -96);
    EXPECT_EQ(offset->ToString(), "-96");
    offset->FromString("0x10");
    EXPECT_EQ(port.Peek<int64_t>(0x0), 16);
}

TEST_F(NodeMapInteger, WritesOutsideTheLimitsOrOffTheGridNameFeatureAndLimit)
{
    const std::pair<int64_t, const char*> cases[] = {
        {-104, "[Offset] value -104 below minimum -100"},
        {104, "[Offset] value 104 above maximum 100"},
        {-98, "[Offset] value -98 off the increment grid of minimum -100 and "
              "increment 4"},
        {std::numeric_limits<int64_t>::min(), "[Offset] value -9223372036854775808 below minimum -100"},
    };
    port.Poke<int64_t>(0x0, 8);
    for (const auto& [value, text] : cases)
    {
        EXPECT_EQ(ErrorText([&] { offset->SetValue(value); }), std::string("OutOfRangeException: ") + text);
        EXPECT_EQ(port.Peek<int64_t>(0x0), 8) << "a refused write leaves the register alone";
    }
    offset->SetValue(100);
    EXPECT_EQ(port.Peek<int64_t>(0x0), 100) << "the maximum is on the grid";

    offset->SetValue(-98, false);
    EXPECT_EQ(port.Peek<int64_t>(0x0), -98) << "Verify false skips the checks";
    EXPECT_THROW(offset->GetValue(true), GenICam::OutOfRangeException);
}

TEST_F(NodeMapInteger, ConstantFeatureKeepsItsValueAndLimits)
{
    EXPECT_EQ(width->GetValue(), 640);
    width->SetValue(1024);
    EXPECT_EQ(width->GetValue(), 1024);
    EXPECT_EQ(ErrorText([&] { width->SetValue(1000); }),
              "OutOfRangeException: [Width] value 1000 off the increment grid of "
              "minimum 16 and increment 16");
    EXPECT_THROW(width->SetValue(0), GenICam::OutOfRangeException);
    EXPECT_EQ(width->GetValue(), 1024);
    width->ImposeMax(2048);
    EXPECT_EQ(ErrorText([&] { width->SetValue(4096); }),
              "OutOfRangeException: [Width] value 4096 above maximum 2048");
}

TEST_F(NodeMapInteger, ShortBigEndianWriteThroughRegisterExtendsTheSignAndCaches)
{
    EXPECT_EQ(temperature->GetMin(), -32768);
    EXPECT_EQ(temperature->GetMax(), 32767);
    port.Poke<uint16_t>(0x20, 0xFEFF);
    EXPECT_EQ(temperature->GetValue(), -2);
    temperature->SetValue(0x1234);
    EXPECT_EQ(port.Peek<uint32_t>(0x20), 0x3412u) << "big-endian, and only its two bytes";
    uint8_t bytes[4];
    EXPECT_THROW(CRegisterPtr(ref._GetNode("Temperature"))->Get(bytes, 4), GenICam::InvalidArgumentException);

    temperature->GetValue();
    const int reads = port.reads;
    port.Poke<uint16_t>(0x20, 0x0700);
    EXPECT_EQ(temperature->GetValue(), 0x1234) << "served from the cache";
    EXPECT_EQ(port.reads, reads);
    EXPECT_EQ(temperature->GetValue(false, true), 7) << "IgnoreCache goes to the port";
    port.Poke<uint16_t>(0x20, 0x0900);
    temperature->GetNode()->InvalidateNode();
    EXPECT_EQ(temperature->GetValue(), 9);
}

} // namespace
