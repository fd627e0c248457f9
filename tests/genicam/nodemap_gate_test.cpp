// The register description of a gate: one Boolean "Enable" whose value,
// availability and lock sit in NoCache registers of its own port.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

using namespace GenApi;
using GenApiTest::CMemoryPort;
using GenApiTest::ErrorText;

namespace
{

constexpr int64_t valueAddress = 0x0;
constexpr int64_t availableAddress = 0x8;
constexpr int64_t lockedAddress = 0x10;

class NodeMapGate : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ref = GenApiTest::CreateMap(GenApiTest::ReadDocument("gate.xml"), &lock);
        port.Poke<uint64_t>(availableAddress, 1);
        ASSERT_TRUE(ref._Connect(&port, "EnablePort"));
        enable = ref._GetNode("Enable");
        ASSERT_TRUE(enable.IsValid());
    }

    CLock lock;
    CNodeMapRef ref;
    CMemoryPort port{0x18};
    CBooleanPtr enable;
};

TEST_F(NodeMapGate, HoldsEveryNodeOfTheDocumentInItsOrderAndConnectsItsPort)
{
    NodeList_t nodes;
    ref._GetNodes(nodes);
    std::vector<std::string> names;
    for (INode* node : nodes)
        names.push_back(node->GetName().c_str());
    EXPECT_EQ(names, (std::vector<std::string>{"Enable", "EnableValue", "EnableIsAvailable", "EnableIsLocked",
                                               "EnablePort", "Root"}));
    EXPECT_EQ(ref._GetNode("Missing"), nullptr);
    EXPECT_EQ(enable->GetNode()->GetToolTip(), "Enable passthrough of data");
    EXPECT_EQ(enable->GetNode()->GetVisibility(), Guru);
    EXPECT_TRUE(enable->GetNode()->IsFeature());
    EXPECT_FALSE(ref._GetNode("EnableValue")->IsFeature());

    EXPECT_EQ(port.PortNode(), ref._GetNode("EnablePort"));
    CMemoryPort other;
    EXPECT_FALSE(ref._Connect(&other, "Root")) << "a category is no port";
    EXPECT_FALSE(ref._Connect(&other, "Missing"));
    EXPECT_EQ(other.PortNode(), nullptr);
}

TEST_F(NodeMapGate, ReadsAndWritesTheValueRegisterEveryTime)
{
    EXPECT_FALSE(enable->GetValue());
    port.Poke<uint64_t>(valueAddress, 1);
    EXPECT_TRUE(enable->GetValue()) << "NoCache: the port is read again";
    enable->SetValue(false);
    EXPECT_EQ(port.Peek<uint64_t>(valueAddress), 0u);
    enable->FromString("true");
    EXPECT_EQ(port.Peek<uint64_t>(valueAddress), 1u);
    EXPECT_EQ(enable->ToString(), "true");
    EXPECT_THROW(enable->FromString("maybe"), GenICam::InvalidArgumentException);
}

TEST_F(NodeMapGate, AccessModeFollowsTheStateRegistersAndThePort)
{
    EXPECT_EQ(enable->GetAccessMode(), RW);
    port.Poke<uint64_t>(lockedAddress, 1);
    EXPECT_EQ(enable->GetAccessMode(), RO);
    EXPECT_FALSE(enable->GetValue());
    EXPECT_EQ(ErrorText([&] { enable->SetValue(true); }),
              "AccessException: [Enable] cannot be written: it is locked");
    EXPECT_EQ(port.Peek<uint64_t>(valueAddress), 0u);

    port.Poke<uint64_t>(lockedAddress, 0);
    port.Poke<uint64_t>(availableAddress, 0);
    EXPECT_EQ(enable->GetAccessMode(), NA);
    EXPECT_THROW(enable->GetValue(), GenICam::AccessException);
    EXPECT_EQ(ErrorText([&] { enable->SetValue(true); }),
              "AccessException: [Enable] cannot be written: it is not available");
    port.Poke<uint64_t>(availableAddress, 1);

    EXPECT_THROW(CIntegerPtr(ref._GetNode("EnableIsLocked"))->SetValue(1), GenICam::AccessException);
    port.accessMode = RO;
    EXPECT_EQ(enable->GetAccessMode(), RO);
    port.accessMode = RW;
    ref._Connect(nullptr, "EnablePort");
    EXPECT_EQ(enable->GetAccessMode(), NA) << "without a port nothing is available";
    EXPECT_EQ(ErrorText([&] { CIntegerPtr(ref._GetNode("EnableValue"))->GetValue(); }),
              "AccessException: [EnableValue] cannot be read: it is not available "
              "(port 'EnablePort' is "
              "not connected)");
}

TEST_F(NodeMapGate, InvalidatingThePortRunsTheCallbacksOfEveryDependentFeature)
{
    GenApiTest::CCallCounter enableCalls;
    GenApiTest::CCallCounter valueCalls;
    GenApiTest::CCallCounter rootCalls;
    Register(enable->GetNode(), enableCalls, &GenApiTest::CCallCounter::OnChanged);
    Register(ref._GetNode("EnableValue"), valueCalls, &GenApiTest::CCallCounter::OnChanged);
    Register(ref._GetNode("Root"), rootCalls, &GenApiTest::CCallCounter::OnChanged);

    port.InvalidateNode(); // what a real port does when its parameter changes
    EXPECT_EQ(enableCalls.calls, 1);
    EXPECT_EQ(valueCalls.calls, 1);
    EXPECT_EQ(rootCalls.calls, 0) << "the category does not depend on the feature's value";

    enable->SetValue(true);
    EXPECT_EQ(enableCalls.calls, 2) << "a write runs each callback once, however many nodes it touched";

    ref._GetNode("EnableIsLocked")->InvalidateNode();
    EXPECT_EQ(enableCalls.calls, 3) << "the lock state is part of the feature";
    EXPECT_EQ(valueCalls.calls, 2) << "the value register does not read the lock";

    CPortWriteList list;
    const uint64_t off = 0;
    list.Write(&off, valueAddress, sizeof off);
    port.Replay(&list, true);
    EXPECT_EQ(port.Peek<uint64_t>(valueAddress), 0u) << "a replay writes through the port";
    EXPECT_EQ(enableCalls.calls, 4) << "and invalidates";
}

TEST_F(NodeMapGate, CallbacksRunInsideOrOutsideTheLockAndCanBeDeregistered)
{
    std::vector<std::string> events;
    auto locked = [&] { return GenApiTest::IsLockedElsewhere(lock) ? " locked" : " free"; };
    auto inside =
        Register(enable->GetNode(), [&](INode* node)
                 { events.push_back(std::string(node->GetName().c_str()) + " inside," + locked()); });
    auto outside = Register(
        enable->GetNode(), [&](INode*) { events.push_back(std::string("outside,") + locked()); },
        cbPostOutsideLock);

    enable->GetNode()->InvalidateNode();
    EXPECT_EQ(events, (std::vector<std::string>{"Enable inside, locked", "outside, free"}));

    EXPECT_TRUE(Deregister(inside));
    EXPECT_FALSE(enable->GetNode()->DeregisterCallback(inside)) << "a handle counts once";
    events.clear();
    enable->GetNode()->InvalidateNode();
    EXPECT_EQ(events, (std::vector<std::string>{"outside, free"}));
    EXPECT_TRUE(Deregister(outside));
}

TEST_F(NodeMapGate, EveryAccessHoldsTheGivenLock)
{
    // The port is called under the map's lock: another thread finds it taken.
    bool lockedDuringRead = false;
    port.onRead = [&](int64_t) { lockedDuringRead = GenApiTest::IsLockedElsewhere(lock); };
    enable->GetValue();
    EXPECT_TRUE(lockedDuringRead);
}

TEST_F(NodeMapGate, ImposedVisibilityAndAccessModeOnlyNarrow)
{
    INode* node = enable->GetNode();
    node->ImposeVisibility(Invisible);
    node->ImposeVisibility(Beginner);
    EXPECT_EQ(node->GetVisibility(), Invisible);
    enable->SetValue(true);
    EXPECT_TRUE(enable->GetValue()) << "a hidden feature stays usable";
    node->ImposeAccessMode(RO);
    node->ImposeAccessMode(RW);
    EXPECT_THROW(enable->SetValue(false), GenICam::AccessException);
}

} // namespace
