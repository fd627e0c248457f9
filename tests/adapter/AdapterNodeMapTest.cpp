// The adapter end to end, through the GenICam runtime's node map: a client on one side,
// a node's getters and setters on the other.
#include "AdapterTestSupport.h"
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

// The ports of the test node as a node publishes them, in the order of adding.
void publish(CAnythingToNodeMapAdapterBase& adapter, TestNode& node)
{
    adapter.addParameterPort(std::make_shared<CategoryParameterPort>("Root"), 0);
    adapter.addParameterPort(node.makeEnablePort(), 0);
    adapter.addRelation("Feature", "Root", "Enable");
    adapter.addParameterPort(node.makeWidthPort(16, 4096, 16), 0);
    adapter.addRelation("Feature", "Root", "Width");
    adapter.addParameterPort(node.makeFpsPort(0.5, 1000.0), 0);
    adapter.addRelation("Feature", "Root", "Fps");
}

struct Layout
{
    const char* name;
    const char* portName;
    const char* prefix;
};

void PrintTo(const Layout& layout, std::ostream* stream)
{
    *stream << layout.name;
}

class AdapterNodeMap : public ::testing::TestWithParam<Layout>
{
protected:
    void SetUp() override { publish(adapter, node); }

    GenApi::INodeMap& build()
    {
        adapter.createNodeMap(&node.lock(), GetParam().portName, GetParam().prefix);
        return *adapter.getNodeMap();
    }

    GenApi::INode* feature(const char* name) { return adapter.getNodeMap()->GetNode(name); }

    // Counts the callbacks of a feature of nodeMap. The counters outlive the adapter,
    // whose end may still invalidate features of its map.
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

TEST_P(AdapterNodeMap, MapIsGuardedByTheNodesLock)
{
    EXPECT_EQ(&build().GetLock(), &node.lock());
}

TEST_P(AdapterNodeMap, RootListsTheFeaturesInTheOrderOfAdding)
{
    build();
    GenApi::CCategoryPtr root = feature("Root");
    ASSERT_TRUE(root.IsValid());
    GenApi::FeatureList_t features;
    root->GetFeatures(features);
    std::vector<gcstring> names;
    for (GenApi::IValue* value : features)
    {
        names.push_back(value->GetNode()->GetName());
    }
    EXPECT_EQ(names, (std::vector<gcstring>{"Enable", "Width", "Fps"}));
}

TEST_P(AdapterNodeMap, ClientReadsWhatTheNodeHoldsAndItsLimitsAndWritesReachTheSetters)
{
    build();
    node.setWidth(2048);
    node.setFps(60.0);
    GenApi::CBooleanPtr enable = feature("Enable");
    GenApi::CIntegerPtr width = feature("Width");
    GenApi::CFloatPtr fps = feature("Fps");
    ASSERT_TRUE(enable.IsValid() && width.IsValid() && fps.IsValid());
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
    EXPECT_TRUE(node.getEnable());
    EXPECT_TRUE(enable->GetValue());
    EXPECT_EQ(node.getWidth(), 1024);
    EXPECT_EQ(node.getFps(), 12.5);
}

TEST_P(AdapterNodeMap, SetterWithANewValueInvalidatesTheFeatureAndRunsTheCallbackOnce)
{
    GenApi::INodeMap& nodeMap = build();
    const int& enableCalls = countCallbacks(nodeMap, "Enable");
    const int& widthCalls = countCallbacks(nodeMap, "Width");
    node.setEnable(true);
    EXPECT_EQ(enableCalls, 1);
    EXPECT_EQ(widthCalls, 0);
    node.setEnable(true); // the same value: nobody hears of it
    EXPECT_EQ(enableCalls, 1);
    node.setWidth(32);
    EXPECT_EQ(widthCalls, 1);
    EXPECT_EQ(enableCalls, 1);
}

TEST_P(AdapterNodeMap, OutOfRangeWriteIsRefusedByTheRuntimeBeforeTheNodeSeesIt)
{
    build();
    GenApi::CIntegerPtr width = feature("Width");
    GenApi::CFloatPtr fps = feature("Fps");
    EXPECT_THROW(width->SetValue(4112), GenICam::OutOfRangeException);
    EXPECT_THROW(width->SetValue(0), GenICam::OutOfRangeException);
    EXPECT_THROW(width->SetValue(24), GenICam::OutOfRangeException); // off the increment grid
    EXPECT_THROW(fps->SetValue(1000.5), GenICam::OutOfRangeException);
    EXPECT_EQ(node.widthSetterCalls, 0);
    EXPECT_EQ(node.fpsSetterCalls, 0);
    EXPECT_EQ(node.getWidth(), 640);
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
    EXPECT_EQ(node.widthSetterCalls, 0);
    EXPECT_TRUE(GenApi::IsWritable(feature("Enable")));
}

TEST_P(AdapterNodeMap, RefusedTextRaisesAndLeavesTheFormerMapWorking)
{
    GenApi::INodeMap* before = &build();
    adapter.addParameterPort(
        std::make_shared<EnableRelay>(&node, "Broken", "", "a < b", "", "Expert", true, true, true, true), 0);
    EXPECT_THROW(adapter.createNodeMap(&node.lock(), GetParam().portName, GetParam().prefix),
                 GenICam::GenericException);
    ASSERT_EQ(adapter.getNodeMap(), before);
    GenApi::CBooleanPtr(before->GetNode("Enable"))->SetValue(true);
    EXPECT_TRUE(node.getEnable());
    const int& calls = countCallbacks(*before, "Width");
    node.setWidth(64);
    EXPECT_EQ(calls, 1);
}

TEST_P(AdapterNodeMap, SecondCreateNodeMapMovesEveryConnectorToTheNewMap)
{
    GenApi::INodeMap* first = &build();
    GenApi::INodeMap* second = &build();
    EXPECT_NE(first, second);
    GenApi::CIntegerPtr(second->GetNode("Width"))->SetValue(160);
    EXPECT_EQ(node.getWidth(), 160);
    const int& calls = countCallbacks(*second, "Fps");
    node.setFps(5.0);
    EXPECT_EQ(calls, 1);
}

TEST_P(AdapterNodeMap, RelationOfAnUnknownOwnerIsDroppedAndTheMapStillBuilds)
{
    adapter.addRelation("Feature", "Nobody", "Enable");
    adapter.addRelation("Invalidator", "Ghost", "Width");
    build();
    EXPECT_NE(feature("Enable"), nullptr);
    EXPECT_EQ(feature("Nobody"), nullptr);
}

TEST_P(AdapterNodeMap, RelationNamingNoNodeIsJudgedByTheRuntime)
{
    GenApi::INodeMap* before = adapter.getNodeMap();
    adapter.addRelation("Feature", "Root", "Ghost");
    EXPECT_THROW(build(), GenICam::GenericException);
    EXPECT_EQ(adapter.getNodeMap(), before);
}

TEST_P(AdapterNodeMap, NodeOutlivingItsAdapterNotifiesNobody)
{
    {
        CAnythingToNodeMapAdapter shortLived;
        publish(shortLived, node);
        shortLived.createNodeMap(&node.lock(), GetParam().portName, GetParam().prefix);
    }
    node.setEnable(true);
    node.setWidth(48);
    EXPECT_TRUE(node.getEnable());
}

INSTANTIATE_TEST_SUITE_P(Adapter, AdapterNodeMap,
                         ::testing::Values(Layout{"OwnPorts", "", ""}, Layout{"SharedPort", "Params", ""},
                                           Layout{"OwnPortsWithPrefix", "", "N1"},
                                           Layout{"SharedPortWithPrefix", "Shared", "N1"}),
                         CaseName());

TEST(Adapter, FreshAdapterGivesAnEmptyMapNotNull)
{
    CAnythingToNodeMapAdapter adapter;
    GenApi::INodeMap* nodeMap = adapter.getNodeMap();
    ASSERT_NE(nodeMap, nullptr);
    EXPECT_EQ(nodeMap->GetNumNodes(), 0u);
    EXPECT_EQ(adapter.getNodeMap(), nodeMap);
}

TEST(Adapter, EmptyTableGivesAMapWithoutFeatures)
{
    CAnythingToNodeMapAdapter adapter;
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

TEST(Adapter, RefusedTextOnAFreshAdapterKeepsTheEmptyMap)
{
    TestNode node;
    CAnythingToNodeMapAdapter adapter;
    GenApi::INodeMap* empty = adapter.getNodeMap();
    adapter.addParameterPort(
        std::make_shared<EnableRelay>(&node, "Broken", "", "x & y", "", "Expert", true, true, true, true), 0);
    EXPECT_THROW(adapter.createNodeMap(&node.lock(), "", ""), GenICam::GenericException);
    EXPECT_EQ(adapter.getNodeMap(), empty);
}

// A boolean port that records what observers it is given.
class ObserverProbe : public BasicDataParameterPort<IBooleanParameterPort>
{
public:
    explicit ObserverProbe(const char* name)
        : BasicDataParameterPort(name, "", "", "", "Expert", true, true, true, true)
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
    auto former = std::make_shared<ObserverProbe>("Enable");
    auto latter = std::make_shared<ObserverProbe>("Enable");
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

TEST(Adapter, NullPortIsIgnored)
{
    CAnythingToNodeMapAdapter adapter;
    adapter.addParameterPort(std::shared_ptr<IBooleanParameterPort>(), 0);
    adapter.addParameterPort(std::shared_ptr<ICategoryParameterPort>(), 0);
    gcstring text;
    adapter.getRegisterDescription(text, "Params", "");
    CAnythingToNodeMapAdapter empty;
    gcstring expected;
    empty.getRegisterDescription(expected, "Params", "");
    EXPECT_EQ(text, expected);
}

// The wiring itself, seen from inside the adapter.
class AdapterWiring : public ::testing::Test
{
protected:
    using Impl = CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl;

    void SetUp() override
    {
        impl.addPort<Detail::CCategoryNodeMapPort>(std::make_shared<CategoryParameterPort>("Root"), 0);
        impl.addPort<Detail::CBooleanNodeMapPort>(node.makeEnablePort(), 0);
    }

    const Detail::CBasicNodeMapPort& port(const char* name) { return *impl.portTable().at(name); }

    TestNode node;
    Impl impl;
};

TEST_F(AdapterWiring, SharedPortServesEveryDataPortFromOneTable)
{
    impl.createNodeMap(&node.lock(), "Params", "");
    ASSERT_NE(impl.multiPort(), nullptr);
    EXPECT_EQ(port("Enable").getConnector(), impl.multiPort());
    EXPECT_EQ(port("Root").getConnector(), nullptr);
    const auto& entries = impl.multiPort()->demultiplexer().entries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].length, 24);
    EXPECT_TRUE(impl.multiPort()->demultiplexer().isSorted());
}

TEST_F(AdapterWiring, FormerMapLivesOnWhileSomeoneHoldsItsReference)
{
    impl.createNodeMap(&node.lock(), "", "");
    const GenApi::CNodeMapRef held(impl.nodeMapRef());
    impl.createNodeMap(&node.lock(), "", "");
    ASSERT_NE(held._Ptr, impl.getNodeMap());
    EXPECT_NE(held._GetNode("Enable"), nullptr);
    // The former map's port is unlinked: its feature no longer reaches the node.
    EXPECT_FALSE(GenApi::IsWritable(held._GetNode("Enable")));
}

TEST_F(AdapterWiring, SwitchingToOwnPortsDropsTheSharedPort)
{
    impl.createNodeMap(&node.lock(), "Params", "");
    impl.createNodeMap(&node.lock(), "", "");
    EXPECT_EQ(impl.multiPort(), nullptr);
    GenApi::CBooleanPtr(impl.getNodeMap()->GetNode("Enable"))->SetValue(true);
    EXPECT_TRUE(node.getEnable());
}

} // namespace
} // namespace AdapterTest
