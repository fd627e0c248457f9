// Integer features: signed registers, limits from registers and from the
// document, the increment grid, byte order and caching.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

#include <limits>

using namespace GenApi;
using GenApiTest::CMemoryPort;

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

    std::string OutOfRangeText(const CIntegerPtr& feature, int64_t value)
    {
        try
        {
            feature->SetValue(value);
        }
        catch (const GenICam::OutOfRangeException& e)
        {
            return e.GetDescription();
        }
        return "accepted";
    }

    CNodeMapRef ref;
    CMemoryPort port;
    CIntegerPtr offset;
    CIntegerPtr width;
    CIntegerPtr temperature;
};

TEST_F(NodeMapInteger, LimitsComeFromTheRegisters)
{
    EXPECT_EQ(offset->GetMin(), -100);
    EXPECT_EQ(offset->GetMax(), 100);
    EXPECT_EQ(offset->GetInc(), 4);
    port.Poke<int64_t>(0x10, 60);
    EXPECT_EQ(offset->GetMax(), 60) << "NoCache limits are read again";
    EXPECT_EQ(offset->GetUnit(), "px");
    EXPECT_EQ(offset->GetRepresentation(), Linear);
}

TEST_F(NodeMapInteger, SignedValuesTravelAsTwosComplement)
{
    offset->SetValue(-96);
    EXPECT_EQ(port.Peek<int64_t>(0x0), -96);
    EXPECT_EQ(offset->GetValue(), -96);
    EXPECT_EQ(offset->ToString(), "-96");
    offset->FromString("0x10");
    EXPECT_EQ(port.Peek<int64_t>(0x0), 16);
}

TEST_F(NodeMapInteger, WritesOutsideTheLimitsOrOffTheGridNameFeatureAndLimit)
{
    struct Case
    {
        int64_t value;
        const char* text;
    };
    const Case cases[] = {
        {-104, "[Offset] value -104 below minimum -100"},
        {104, "[Offset] value 104 above maximum 100"},
        {-98, "[Offset] value -98 off the increment grid of minimum -100 and increment 4"},
        {std::numeric_limits<int64_t>::min(), "[Offset] value -9223372036854775808 below minimum -100"},
    };
    port.Poke<int64_t>(0x0, 8);
    for (const Case& c : cases)
    {
        EXPECT_EQ(OutOfRangeText(offset, c.value), c.text);
        EXPECT_EQ(port.Peek<int64_t>(0x0), 8) << "a refused write leaves the register alone";
    }
    EXPECT_EQ(OutOfRangeText(offset, 100), "accepted") << "the maximum is on the grid";

    offset->SetValue(-98, false);
    EXPECT_EQ(port.Peek<int64_t>(0x0), -98) << "Verify false skips the checks";
    EXPECT_THROW(offset->GetValue(true), GenICam::OutOfRangeException);
}

TEST_F(NodeMapInteger, ConstantFeatureKeepsItsValueAndLimits)
{
    EXPECT_EQ(width->GetValue(), 640);
    EXPECT_EQ(width->GetMin(), 16);
    EXPECT_EQ(width->GetMax(), 4096);
    EXPECT_EQ(width->GetInc(), 16);
    EXPECT_EQ(width->GetAccessMode(), RW);
    width->SetValue(1024);
    EXPECT_EQ(width->GetValue(), 1024);
    EXPECT_EQ(OutOfRangeText(width, 1000),
              "[Width] value 1000 off the increment grid of minimum 16 and increment 16");
    EXPECT_EQ(OutOfRangeText(width, 0), "[Width] value 0 below minimum 16");
    EXPECT_EQ(width->GetValue(), 1024);
    EXPECT_TRUE(width->IsValueCacheValid());

    width->ImposeMax(2048);
    EXPECT_EQ(width->GetMax(), 2048);
    EXPECT_EQ(OutOfRangeText(width, 4096), "[Width] value 4096 above maximum 2048");
}

TEST_F(NodeMapInteger, ShortBigEndianRegisterExtendsTheSign)
{
    EXPECT_EQ(temperature->GetMin(), -32768);
    EXPECT_EQ(temperature->GetMax(), 32767);
    port.Poke<uint8_t>(0x20, 0xFF);
    port.Poke<uint8_t>(0x21, 0xFE);
    EXPECT_EQ(temperature->GetValue(), -2);

    temperature->SetValue(0x1234);
    EXPECT_EQ(port.Byte(0x20), 0x12);
    EXPECT_EQ(port.Byte(0x21), 0x34);
    EXPECT_EQ(port.Byte(0x22), 0x00) << "the write stays inside its two bytes";
    EXPECT_EQ(OutOfRangeText(temperature, 40000), "[Temperature] value 40000 above maximum 32767");

    CRegisterPtr raw = ref._GetNode("Temperature");
    uint8_t bytes[2] = {0x80, 0x00};
    raw->Set(bytes, 2);
    EXPECT_EQ(temperature->GetValue(), -32768);
    EXPECT_EQ(raw->GetAddress(), 0x20);
    EXPECT_EQ(raw->GetLength(), 2);
    EXPECT_THROW(raw->Get(bytes, 4), GenICam::InvalidArgumentException);
}

TEST_F(NodeMapInteger, WriteThroughRegisterServesReadsFromItsCacheUntilInvalidated)
{
    temperature->GetValue();
    const int reads = port.reads;
    port.Poke<uint8_t>(0x21, 7);
    EXPECT_NE(temperature->GetValue(), 7) << "served from the cache";
    EXPECT_TRUE(temperature->IsValueCacheValid());
    EXPECT_EQ(port.reads, reads);
    EXPECT_EQ(temperature->GetValue(false, true), 7) << "IgnoreCache goes to the port";
    port.Poke<uint8_t>(0x21, 9);
    temperature->GetNode()->InvalidateNode();
    EXPECT_FALSE(temperature->IsValueCacheValid());
    EXPECT_EQ(temperature->GetValue(), 9);

    CIntegerPtr offsetValue = ref._GetNode("OffsetValue");
    EXPECT_FALSE(offsetValue->IsValueCacheValid()) << "NoCache never has a valid cache";
    EXPECT_FALSE(offsetValue->GetNode()->IsCachable());
    EXPECT_EQ(offsetValue->GetNode()->GetCachingMode(), NoCache);
}

TEST_F(NodeMapInteger, FeatureLinksToItsRegisters)
{
    NodeList_t children;
    offset->GetNode()->GetChildren(children, ctValueChildren);
    ASSERT_EQ(children.size(), 1u);
    EXPECT_EQ(children[0]->GetName(), "OffsetValue");

    offset->GetNode()->GetChildren(children, ctReadingChildren);
    EXPECT_EQ(children.size(), 4u);

    NodeList_t depending;
    ref._GetNode("Device")->GetChildren(depending, ctDependingNodes);
    EXPECT_EQ(depending.size(), 6u) << "five registers and the feature that reads four of them";

    NodeList_t parents;
    ref._GetNode("OffsetMin")->GetParents(parents);
    ASSERT_EQ(parents.size(), 1u);
    EXPECT_EQ(parents[0]->GetName(), "Offset");
}

} // namespace
