// Several features on one port: a Float with register limits, a Boolean, and
// a pInvalidator between them.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

#include <limits>

using namespace GenApi;
using GenApiTest::CMemoryPort;

namespace
{

class NodeMapSharedPort : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ref = GenApiTest::CreateMap(GenApiTest::ReadDocument("shared_port.xml"));
        ASSERT_TRUE(ref._Connect(&port, "Params"));
        port.Poke<double>(0x8, 1000.0); // FpsMax
        port.Poke<double>(0x10, 0.5);   // FpsMin
        port.Poke<uint64_t>(0x18, 1);   // FpsIsAvailable
        port.Poke<double>(0x0, 25.0);   // FpsValue
        fps = ref._GetNode("Fps");
        throttle = ref._GetNode("ThrottleMode");
    }

    CNodeMapRef ref;
    CMemoryPort port{0x38};
    CFloatPtr fps;
    CBooleanPtr throttle;
};

TEST_F(NodeMapSharedPort, EveryFeatureReachesItsOwnAddressOfTheOnePort)
{
    EXPECT_DOUBLE_EQ(fps->GetValue(), 25.0);
    EXPECT_DOUBLE_EQ(fps->GetMin(), 0.5);
    EXPECT_DOUBLE_EQ(fps->GetMax(), 1000.0);
    EXPECT_EQ(fps->GetUnit(), "Hz");
    EXPECT_FALSE(fps->HasInc());
    EXPECT_EQ(fps->GetNode()->GetDisplayName(), "Frames per second");

    throttle->SetValue(true);
    EXPECT_EQ(port.Peek<uint64_t>(0x30), 1u);
    fps->SetValue(12.5);
    EXPECT_DOUBLE_EQ(port.Peek<double>(0x0), 12.5);
    EXPECT_EQ(port.Peek<uint64_t>(0x30), 1u);
    EXPECT_EQ(fps->ToString(), "12.5");
}

TEST_F(NodeMapSharedPort, FloatWritesOutsideTheLimitsNameFeatureAndLimit)
{
    struct Case
    {
        double value;
        const char* text;
    };
    const Case cases[] = {
        {2000.0, "[Fps] value 2000 above maximum 1000"},
        {0.25, "[Fps] value 0.25 below minimum 0.5"},
        {std::numeric_limits<double>::quiet_NaN(), "[Fps] value NaN is not a number"},
        {std::numeric_limits<double>::infinity(), "[Fps] value INF above maximum 1000"},
    };
    for (const Case& c : cases)
    {
        try
        {
            fps->SetValue(c.value);
            ADD_FAILURE() << c.text << " was accepted";
        }
        catch (const GenICam::OutOfRangeException& e)
        {
            EXPECT_STREQ(e.GetDescription(), c.text);
        }
    }
    EXPECT_DOUBLE_EQ(port.Peek<double>(0x0), 25.0);
}

TEST_F(NodeMapSharedPort, LockAndAvailabilityOfOneFeatureLeaveTheOtherAlone)
{
    port.Poke<uint64_t>(0x20, 1); // FpsIsLocked
    EXPECT_EQ(fps->GetAccessMode(), RO);
    EXPECT_EQ(throttle->GetAccessMode(), RW);
    EXPECT_THROW(fps->SetValue(10.0), GenICam::AccessException);
    port.Poke<uint64_t>(0x18, 0);
    EXPECT_EQ(fps->GetAccessMode(), NA);
    EXPECT_THROW(fps->GetValue(), GenICam::AccessException);
    throttle->SetValue(true);
    EXPECT_TRUE(throttle->GetValue());
}

TEST_F(NodeMapSharedPort, InvalidatorCarriesAChangeToTheFeaturesThatNameIt)
{
    GenApiTest::CCallCounter fpsCalls;
    GenApiTest::CCallCounter throttleCalls;
    Register(fps->GetNode(), fpsCalls, &GenApiTest::CCallCounter::OnChanged);
    Register(throttle->GetNode(), throttleCalls, &GenApiTest::CCallCounter::OnChanged);

    throttle->SetValue(true);
    EXPECT_EQ(throttleCalls.calls, 1);
    EXPECT_EQ(fpsCalls.calls, 1) << "FpsValue has ThrottleMode as pInvalidator";

    fps->SetValue(30.0);
    EXPECT_EQ(fpsCalls.calls, 2);
    EXPECT_EQ(throttleCalls.calls, 1) << "the invalidator relation runs one way";

    NodeList_t invalidators;
    ref._GetNode("FpsValue")->GetChildren(invalidators, ctInvalidatingChildren);
    ASSERT_EQ(invalidators.size(), 1u);
    EXPECT_EQ(invalidators[0], throttle->GetNode());
}

TEST_F(NodeMapSharedPort, PortNodeItselfReadsAndWritesThroughTheClientPort)
{
    CPortPtr portNode = ref._GetNode("Params");
    uint64_t bytes = 0;
    portNode->Read(&bytes, 0x18, sizeof bytes);
    EXPECT_EQ(bytes, 1u);
    bytes = 7;
    portNode->Write(&bytes, 0x30, sizeof bytes);
    EXPECT_EQ(port.Peek<uint64_t>(0x30), 7u);
    EXPECT_THROW(throttle->GetValue(), GenICam::OutOfRangeException) << "7 is neither OnValue nor OffValue";
}

} // namespace
