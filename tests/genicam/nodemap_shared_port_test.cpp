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
    EXPECT_FALSE(fps->HasInc());
    throttle->SetValue(true);
    EXPECT_EQ(port.Peek<uint64_t>(0x30), 1u);
    fps->SetValue(12.5);
    EXPECT_DOUBLE_EQ(port.Peek<double>(0x0), 12.5);
    EXPECT_EQ(port.Peek<uint64_t>(0x30), 1u);
    EXPECT_EQ(fps->ToString(), "12.5");

    port.Poke<uint64_t>(0x20, 1); // FpsIsLocked
    EXPECT_EQ(fps->GetAccessMode(), RO);
    EXPECT_EQ(throttle->GetAccessMode(), RW) << "the lock of one feature leaves the other alone";
    port.Poke<uint64_t>(0x30, 7);
    EXPECT_THROW(throttle->GetValue(), GenICam::OutOfRangeException) << "7 is neither OnValue nor OffValue";
}

TEST_F(NodeMapSharedPort, FloatWritesOutsideTheLimitsNameFeatureAndLimit)
{
    const std::pair<double, const char*> cases[] = {
        {2000.0, "[Fps] value 2000 above maximum 1000"},
        {0.25, "[Fps] value 0.25 below minimum 0.5"},
        {std::numeric_limits<double>::quiet_NaN(), "[Fps] value NaN is not a number"},
        {std::numeric_limits<double>::infinity(), "[Fps] value INF above maximum 1000"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(GenApiTest::ErrorText([&] { fps->SetValue(value); }),
                  std::string("OutOfRangeException: ") + text);
    EXPECT_DOUBLE_EQ(port.Peek<double>(0x0), 25.0);
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
}

} // namespace
