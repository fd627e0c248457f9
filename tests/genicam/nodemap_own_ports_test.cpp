// Integer features in the layout of a node's parameters: each feature with
// value, limits and state registers on a port of its own, linked by
// pInvalidator and pSelected.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

using namespace GenApi;
using GenApiTest::CMemoryPort;

namespace
{

class NodeMapOwnPorts : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ref = GenApiTest::CreateMap(GenApiTest::ReadDocument("own_port_integers.xml"));
        for (CMemoryPort* port : {&leftPort, &widthPort})
        {
            port->Poke<int64_t>(0x8, 100); // Max
            port->Poke<int64_t>(0x18, 2);  // Inc
            port->Poke<int64_t>(0x20, 1);  // IsAvailable
        }
        ASSERT_TRUE(ref._Connect(&leftPort, "AoiLeftPort"));
        ASSERT_TRUE(ref._Connect(&widthPort, "AoiWidthPort"));
        left = ref._GetNode("AoiLeft");
        width = ref._GetNode("AoiWidth");
        Register(left->GetNode(), leftCalls, &GenApiTest::CCallCounter::OnChanged);
        Register(width->GetNode(), widthCalls, &GenApiTest::CCallCounter::OnChanged);
    }

    CNodeMapRef ref;
    CMemoryPort leftPort{0x30};
    CMemoryPort widthPort{0x30};
    CIntegerPtr left;
    CIntegerPtr width;
    GenApiTest::CCallCounter leftCalls;
    GenApiTest::CCallCounter widthCalls;
};

TEST_F(NodeMapOwnPorts, EachFeatureUsesItsOwnPortAndChangesTravelByInvalidatorAndSelector)
{
    left->SetValue(4);
    EXPECT_EQ(leftPort.Peek<int64_t>(0x0), 4);
    EXPECT_EQ(leftCalls.calls, 1);
    EXPECT_EQ(widthCalls.calls, 1) << "AoiWidthValue names AoiLeft as pInvalidator";

    width->SetValue(64);
    EXPECT_EQ(widthPort.Peek<int64_t>(0x0), 64);
    EXPECT_EQ(leftPort.Peek<int64_t>(0x0), 4);
    EXPECT_EQ(widthCalls.calls, 2);
    EXPECT_EQ(leftCalls.calls, 2) << "AoiWidth selects AoiLeft";

    widthPort.Poke<int64_t>(0x28, 1); // AoiWidthIsLocked
    EXPECT_EQ(width->GetAccessMode(), RO);
    EXPECT_EQ(left->GetAccessMode(), RW);
}

TEST_F(NodeMapOwnPorts, PortInvalidationReachesOnlyWhatHangsOnThatPort)
{
    CNodeMapRef other(GenApiTest::CreateMap(GenApiTest::ReadDocument("own_port_integers.xml")));
    GenApiTest::CCallCounter unrelated;
    Register(other._GetNode("AoiLeft"), unrelated, &GenApiTest::CCallCounter::OnChanged);

    widthPort.InvalidateNode();
    EXPECT_EQ(widthCalls.calls, 1);
    EXPECT_EQ(leftCalls.calls, 1) << "through the selector";
    leftPort.InvalidateNode();
    EXPECT_EQ(leftCalls.calls, 2);
    EXPECT_EQ(widthCalls.calls, 2) << "through the invalidator";
    EXPECT_EQ(unrelated.calls, 0) << "another map of the same document is not touched";
}

} // namespace
