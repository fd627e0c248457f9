// How a change travels: invalidation of a node and what depends on it, through
// pInvalidator and pSelected, callbacks inside and outside the map's lock, and
// failures of ports and callbacks.
#include "genapi_test_support.h"

using namespace GenApi;

namespace
{

using NodeMapNotification = GenApiTest::CMapTest;

TEST_F(NodeMapNotification, InvalidationsRunTheCallbacksOfWhatDependsOnThemInsideOrOutsideTheLock)
{
    Load(GenApiTest::ReadDocument("gate.xml"), "EnablePort");
    port.Poke<uint64_t>(0x8, 1);
    for (const char* name : {"Enable", "EnableValue", "Root"})
        Count(name);
    port.InvalidateNode(); // what a real port does when its parameter changes
    EXPECT_EQ(calls, (std::map<std::string, int>{{"Enable", 1}, {"EnableValue", 1}}))
        << "the category does not depend on the feature's value";
    CBooleanPtr(ref._GetNode("Enable"))->SetValue(true);
    EXPECT_EQ(calls["Enable"], 2) << "a write runs each callback once, however many nodes it touched";
    ref._GetNode("EnableIsLocked")->InvalidateNode();
    EXPECT_EQ(calls["Enable"], 3) << "the lock state is part of the feature";
    EXPECT_EQ(calls["EnableValue"], 2) << "the value register does not read the lock";
    port.Replay(nullptr, true);
    EXPECT_EQ(calls["Enable"], 4);

    // Callbacks run inside or outside the lock until they are deregistered.
    INode* enable = ref._GetNode("Enable");
    std::vector<std::string> events;
    auto locked = [&] { return GenApiTest::IsLockedElsewhere(lock) ? " locked" : " free"; };
    auto inside = Register(enable, [&](INode* node)
                           { events.push_back(std::string(node->GetName()) + " inside," + locked()); });
    auto outside = Register(
        enable, [&](INode*) { events.push_back(std::string("outside,") + locked()); }, cbPostOutsideLock);
    enable->InvalidateNode();
    EXPECT_EQ(events, (std::vector<std::string>{"Enable inside, locked", "outside, free"}));

    EXPECT_TRUE(Deregister(inside));
    EXPECT_FALSE(enable->DeregisterCallback(inside)) << "a handle counts once";
    events.clear();
    enable->InvalidateNode();
    EXPECT_EQ(events, (std::vector<std::string>{"outside, free"}));
    EXPECT_TRUE(Deregister(outside));
}

// shared_port.xml: FpsValue names ThrottleMode as pInvalidator.
TEST_F(NodeMapNotification, InvalidatorCarriesAChangeOneWay)
{
    Load(GenApiTest::ReadDocument("shared_port.xml"), "Params");
    port.Poke<double>(0x8, 1000.0);
    port.Poke<uint64_t>(0x18, 1);
    Count("Fps");
    Count("ThrottleMode");
    CBooleanPtr(ref._GetNode("ThrottleMode"))->SetValue(true);
    EXPECT_EQ(calls, (std::map<std::string, int>{{"Fps", 1}, {"ThrottleMode", 1}}));
    CFloatPtr(ref._GetNode("Fps"))->SetValue(30.0);
    EXPECT_EQ(calls, (std::map<std::string, int>{{"Fps", 2}, {"ThrottleMode", 1}}));
}

// own_port_integers.xml, the layout of a node's parameters: each feature on a port
// of its own; AoiWidthValue names AoiLeft as pInvalidator, AoiWidth selects AoiLeft.
TEST_F(NodeMapNotification, FeaturesOnPortsOfTheirOwnAreLinkedByInvalidatorAndSelector)
{
    Load(GenApiTest::ReadDocument("own_port_integers.xml"), "AoiLeftPort");
    GenApiTest::CMemoryPort widthPort;
    ASSERT_TRUE(ref._Connect(&widthPort, "AoiWidthPort"));
    for (GenApiTest::CMemoryPort* p : {&port, &widthPort})
    {
        p->Poke<int64_t>(0x8, 100); // Max
        p->Poke<int64_t>(0x18, 2);  // Inc
        p->Poke<int64_t>(0x20, 1);  // IsAvailable
    }
    CNodeMapRef other(GenApiTest::CreateMap(GenApiTest::ReadDocument("own_port_integers.xml")));
    Register(other._GetNode("AoiLeft"), [&](INode*) { ++calls["other map"]; });
    Count("AoiLeft");
    Count("AoiWidth");

    widthPort.InvalidateNode();
    EXPECT_EQ(calls, (std::map<std::string, int>{{"AoiLeft", 1}, {"AoiWidth", 1}})) << "through the selector";
    CIntegerPtr(ref._GetNode("AoiLeft"))->SetValue(4);
    EXPECT_EQ(calls, (std::map<std::string, int>{{"AoiLeft", 2}, {"AoiWidth", 2}}))
        << "through the invalidator";
    CIntegerPtr(ref._GetNode("AoiWidth"))->SetValue(64);
    EXPECT_EQ(port.Peek<int64_t>(0x0), 4);
    EXPECT_EQ(widthPort.Peek<int64_t>(0x0), 64);
    widthPort.Poke<int64_t>(0x28, 1); // AoiWidthIsLocked
    EXPECT_EQ(CIntegerPtr(ref._GetNode("AoiWidth"))->GetAccessMode(), RO);
    EXPECT_EQ(CIntegerPtr(ref._GetNode("AoiLeft"))->GetAccessMode(), RW);
}

TEST_F(NodeMapNotification, FailingPortOrCallbackLeavesTheMapUsableAndTheOtherCallbacksRun)
{
    Load(GenApiTest::Document(GenApiTest::IntReg("Gain", 0) + GenApiTest::IntReg("Echo", 8)));
    CIntegerPtr gain = ref._GetNode("Gain");
    port.failReads = true;
    EXPECT_THROW(gain->GetValue(), std::runtime_error);
    EXPECT_FALSE(GenApiTest::IsLockedElsewhere(lock));
    port.failReads = false;

    CIntegerPtr echo = ref._GetNode("Echo");
    Register(gain->GetNode(), [](INode*) { throw GenICam::RuntimeException("observer failed", "here", 1); });
    Register(gain->GetNode(), [&](INode*) { echo->SetValue(gain->GetValue() * 2); });
    Register(
        gain->GetNode(), [&](INode*) { ++calls["outside"]; }, cbPostOutsideLock);
    Count("Echo");
    EXPECT_THROW(gain->SetValue(21), GenICam::RuntimeException);
    EXPECT_EQ(port.Peek<int64_t>(0), 21);
    EXPECT_EQ(echo->GetValue(), 42) << "a callback may use the map and sees the new value";
    EXPECT_EQ(calls, (std::map<std::string, int>{{"Echo", 1}, {"outside", 1}}))
        << "an invalidation raised by a callback is carried out in the same access";
}

} // namespace
