// The adapter end to end, through the GenICam runtime's node map: a client on one side, a node's getters and
// setters on the other.
#include "TestNode.h"
#include "detail/AnythingToNodeMapAdapterImpl.h"
#include "detail/CategoryNodeMapPort.h"
#include "detail/DataNodeMapPort.h"

#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapter.h>

#include <GenApi/GenApi.h>

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace AdapterTest
{
namespace
{

using GenICam::gcstring;

struct Layout
{
    const char* name;
    const char* portName;
    const char* prefix;
};

// The ports of the test node as a node publishes them, in the order of adding.
class AdapterNodeMap : public ::testing::TestWithParam<Layout>
{
protected:
    void SetUp() override
    {
        adapter.addParameterPort(std::make_shared<CategoryParameterPort>("Root"), 0);
        adapter.addParameterPort(node.makeEnablePort(), 0);
        adapter.addParameterPort(node.makeWidthPort(), 0);
        adapter.addParameterPort(node.makeFpsPort(), 0);
        for (const char* name : {"Enable", "Width", "Fps"})
        {
            adapter.addRelation("Feature", "Root", name);
        }
    }

    GenApi::INodeMap& build()
    {
        adapter.createNodeMap(&node.lock(), GetParam().portName, GetParam().prefix);
        return *adapter.getNodeMap();
    }

    GenApi::INode* feature(const char* name) { return adapter.getNodeMap()->GetNode(name); }

    // Counts the callbacks of a feature of nodeMap. The counters outlive the adapter, whose end may still
    // invalidate features of its map.
    int& countCallbacks(GenApi::INodeMap& nodeMap, const char* name)
    {
        int& calls = callbackCalls[name];
        GenApi::Register(nodeMap.GetNode(name), [&calls](GenApi::INode*) { ++calls; });
        return calls;
    }

    std::map<std::string, int> callbackCalls;
    TestNode node;
    CAnythingToNodeMapAdapter adapter;
};

TEST_P(AdapterNodeMap, ClientReadsWhatTheNodeHoldsAndItsLimitsAndWritesReachTheSetters)
{
    EXPECT_EQ(&build().GetLock(), &node.lock());

    node.setWidth(2048);
    node.setFps(60.0);
    GenApi::CBooleanPtr enable = feature("Enable");
    GenApi::CIntegerPtr width = feature("Width");
    GenApi::CFloatPtr fps = feature("Fps");
    EXPECT_FALSE(enable->GetValue());
    EXPECT_EQ(width->GetValue(), 2048);
    EXPECT_EQ(width->GetMin(), 16);
    EXPECT_EQ(width->GetMax(), 4096);
    EXPECT_EQ(width->GetInc(), 16);
    EXPECT_EQ(fps->GetValue(), 60.0);
    EXPECT_EQ(fps->GetMin(), 0.5);
    EXPECT_EQ(fps->GetMax(), 1000.0);

    enable->SetValue(true);
    width->SetValue(1024);
    fps->SetValue(12.5);
    EXPECT_TRUE(enable->GetValue());
    EXPECT_TRUE(node.getEnable());
    EXPECT_EQ(node.getWidth(), 1024);
    EXPECT_EQ(node.getFps(), 12.5);
}

TEST_P(AdapterNodeMap, SetterWithANewValueInvalidatesTheFeatureAndRunsTheCallbackOnce)
{
    GenApi::INodeMap& nodeMap = build();
    const int& enableCalls = countCallbacks(nodeMap, "Enable");
    const int& widthCalls = countCallbacks(nodeMap, "Width");
    node.setEnable(true);
    node.setEnable(true); // the same value: nobody hears of it
    EXPECT_EQ(enableCalls, 1);
    EXPECT_EQ(widthCalls, 0);
    node.setWidth(32);
    EXPECT_EQ(widthCalls, 1);
    EXPECT_EQ(enableCalls, 1);
}

TEST_P(AdapterNodeMap, PortStateDecidesAvailabilityAndLocking)
{
    adapter.addParameterPort(
        std::make_shared<EnableRelay>(&node, "Hidden", "", "", "", "Expert", false, true, true, true), 0);
    adapter.addParameterPort(std::make_shared<WidthRelay>(&node, "Frozen", "", "", "", "Expert", true, false,
                                                          true, true, 0, 4096, 1, "PureNumber"),
                             0);
    adapter.addParameterPort(std::make_shared<FpsRelay>(&node, "Fixed", "", "", "", "Expert", true, false,
                                                        false, false, 0.0, 100.0),
                             0);
    build();
    EXPECT_FALSE(GenApi::IsAvailable(feature("Hidden")));
    EXPECT_TRUE(GenApi::IsReadable(feature("Frozen")));
    EXPECT_FALSE(GenApi::IsWritable(feature("Frozen")));
    EXPECT_TRUE(GenApi::IsReadable(feature("Fixed")));
    EXPECT_FALSE(GenApi::IsWritable(feature("Fixed")));
    EXPECT_THROW(GenApi::CIntegerPtr(feature("Frozen"))->SetValue(8), GenICam::AccessException);
    EXPECT_EQ(node.setterCalls, 0);
    EXPECT_TRUE(GenApi::IsWritable(feature("Enable")));
}

TEST_P(AdapterNodeMap, RefusedTextRaisesAndLeavesTheFormerMapWorking)
{
    GenApi::INodeMap* before = &build();
    adapter.addParameterPort(
        std::make_shared<EnableRelay>(&node, "Broken", "", "a < b", "", "Expert", true, true, true, true), 0);
    EXPECT_THROW(build(), GenICam::GenericException);
    ASSERT_EQ(adapter.getNodeMap(), before);
    GenApi::CBooleanPtr(before->GetNode("Enable"))->SetValue(true);
    EXPECT_TRUE(node.getEnable());
    const int& calls = countCallbacks(*before, "Width");
    node.setWidth(64);
    EXPECT_EQ(calls, 1);
}

// Run it under the address sanitizer: a dead observer would be reached here.
TEST_P(AdapterNodeMap, NodeOutlivingItsAdapterNotifiesNobody)
{
    {
        CAnythingToNodeMapAdapter shortLived;
        shortLived.addParameterPort(node.makeEnablePort(), 0);
        shortLived.addParameterPort(node.makeWidthPort(), 0);
        shortLived.createNodeMap(&node.lock(), GetParam().portName, GetParam().prefix);
    }
    node.setEnable(true);
    node.setWidth(48);
    EXPECT_TRUE(node.getEnable());
}

const auto layouts =
    ::testing::Values(Layout{"OwnPorts", "", ""}, Layout{"SharedPort", "Params", ""},
                      Layout{"OwnPortsWithPrefix", "", "N1"}, Layout{"SharedPortWithPrefix", "Shared", "N1"});
const auto layoutName = [](const auto& test) { return std::string(test.param.name); };

INSTANTIATE_TEST_SUITE_P(Adapter, AdapterNodeMap, layouts, layoutName);

// A second build from inside the adapter, into the other layout under another prefix.
class AdapterRebuild : public ::testing::TestWithParam<Layout>
{
protected:
    void SetUp() override
    {
        impl.addPort<Detail::CCategoryNodeMapPort>(std::make_shared<CategoryParameterPort>("Root"), 0);
        impl.addPort<Detail::CBooleanNodeMapPort>(node.makeEnablePort(), 0);
        impl.addPort<Detail::CFloatNodeMapPort>(node.makeFpsPort(), 0);
    }

    TestNode node;
    int fpsCallbacks = 0; // outlives the adapter, whose end may still invalidate features of its map
    CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl impl;
};

// Every connector moves to the new map; the former map lives on while a client holds its reference, but its
// ports are unlinked, and a category is never connected. A port under a taken name replaces the former, which
// leaves its connector.
TEST_P(AdapterRebuild, MovesEveryConnectorAndUnlinksTheFormerMap)
{
    impl.createNodeMap(&node.lock(), GetParam().portName, GetParam().prefix);
    const auto enable = impl.portTable().at("Enable");
    // Held beyond the former map, so that a link left to the former real port shows on its Port node instead
    // of dangling.
    const auto formerRealPort = enable->getConnector();
    const GenApi::CNodeMapRef former(impl.nodeMapRef());
    const gcstring formerPortNode =
        *GetParam().portName ? gcstring(GetParam().portName) : enable->getPortName();
    const bool sharedNow = *GetParam().portName == '\0';
    impl.createNodeMap(&node.lock(), sharedNow ? "Params" : "", "X");
    ASSERT_NE(former._Ptr, impl.getNodeMap());
    EXPECT_NE(former._GetNode("Enable"), nullptr);
    EXPECT_FALSE(GenApi::IsWritable(former._GetNode("Enable")));
    ASSERT_NE(former._GetNode(formerPortNode), nullptr) << formerPortNode;
    EXPECT_FALSE(GenApi::IsReadable(former._GetNode(formerPortNode)));
    EXPECT_EQ(impl.multiPort() != nullptr, sharedNow);
    EXPECT_EQ(impl.portTable().at("Root")->getConnector(), nullptr);

    GenApi::CBooleanPtr(impl.getNodeMap()->GetNode("Enable"))->SetValue(true);
    EXPECT_TRUE(node.getEnable());
    GenApi::Register(impl.getNodeMap()->GetNode("Fps"), [this](GenApi::INode*) { ++fpsCallbacks; });
    node.setFps(5.0);
    EXPECT_EQ(fpsCallbacks, 1);

    impl.addPort<Detail::CBooleanNodeMapPort>(node.makeEnablePort(), 0);
    EXPECT_EQ(enable->getConnector(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Adapter, AdapterRebuild, layouts, layoutName);

TEST(Adapter, FreshAdapterAndOneWithoutPortsGiveAMapWithoutFeatures)
{
    CAnythingToNodeMapAdapter adapter;
    ASSERT_NE(adapter.getNodeMap(), nullptr);
    EXPECT_EQ(adapter.getNodeMap()->GetNumNodes(), 0u);
    adapter.addParameterPort(std::shared_ptr<IBooleanParameterPort>(), 0); // a null port is ignored
    const GenApi::CNodeMapRef result = adapter.createNodeMap(nullptr, "", "");
    EXPECT_EQ(result._Ptr, nullptr);
    EXPECT_EQ(result._GetDeviceName(), gcstring("Device"));
    GenApi::NodeList_t nodes;
    adapter.getNodeMap()->GetNodes(nodes);
    for (GenApi::INode* n : nodes)
    {
        EXPECT_FALSE(n->IsFeature()) << n->GetName();
    }
}

// A boolean port that records what observers it is given.
class ObserverProbe : public BasicDataParameterPort<IBooleanParameterPort>
{
public:
    ObserverProbe()
        : BasicDataParameterPort("Enable", "", "", "", "Expert", true, true, true, true)
    {
    }
    std::size_t getValueSize() const override { return 1; }
    bool getValue() const override { return false; }
    void setValue(bool, bool) override {}
    void setObserver(IParameterPortObserver* observer) override
    {
        observers.push_back(observer);
        BasicDataParameterPort::setObserver(observer);
    }

    std::vector<IParameterPortObserver*> observers;
};

TEST(Adapter, PortUnderATakenNameReplacesTheFormerWhichLosesItsObserver)
{
    CAnythingToNodeMapAdapter adapter;
    auto former = std::make_shared<ObserverProbe>();
    auto latter = std::make_shared<ObserverProbe>();
    adapter.addParameterPort(former, 0);
    adapter.createNodeMap(nullptr, "", "");
    adapter.addParameterPort(latter, 0);
    ASSERT_EQ(former->observers.size(), 2u);
    EXPECT_NE(former->observers[0], nullptr);
    EXPECT_EQ(former->observers[1], nullptr);
    ASSERT_EQ(latter->observers.size(), 1u);
    EXPECT_NE(latter->observers[0], nullptr);

    // Adding the same port again keeps it observed.
    adapter.addParameterPort(latter, 0);
    EXPECT_NE(latter->observers.back(), nullptr);
}

} // namespace
} // namespace AdapterTest
