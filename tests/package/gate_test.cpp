#include "node_test_support.h"

#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/NodeBase.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>
#include <TarvikViewerDataTypes2/NoValue.h>

#include <gtest/gtest.h>

using namespace Tarvik::DataProcessing;

namespace
{

class GateTest : public ::testing::Test
{
protected:
    PackageLoader package{builtPackagePath()};
    std::shared_ptr<Core::INode> gate = package.createNode("Gate");

    void setEnable(bool enable)
    {
        auto settings = std::make_shared<Core::MemorySettings>();
        settings->setBool("Enable", enable);
        gate->load(settings);
    }

    bool savedEnable()
    {
        auto settings = std::make_shared<Core::MemorySettings>();
        gate->save(settings);
        return settings->getBool("Enable");
    }

    static Core::PinDescriptor pin(const std::vector<Core::PinDescriptor>& pins, const char* name)
    {
        for (const Core::PinDescriptor& p : pins)
            if (p.name == name)
                return p;
        ADD_FAILURE() << "no pin " << name;
        return {};
    }

    std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<NodeTestSupport::TestUpdate>();
};

} // namespace

TEST_F(GateTest, DeclaresItsPins)
{
    const auto inputs = gate->getInputDescriptors();
    ASSERT_EQ(inputs.size(), 1u);
    const Core::PinDescriptor input = inputs[0];
    EXPECT_EQ(input.name, "GenericInput");
    EXPECT_EQ(input.description, "A generic input, allowing many data types.");
    EXPECT_EQ(input.type, Utils::TypeInfo::get<Core::IValue>(true));
    EXPECT_TRUE(input.configurable);
    EXPECT_FALSE(input.flag);
    EXPECT_EQ(input.limit, ~uint64_t{0});
    ASSERT_TRUE(input.hasDefault);
    EXPECT_EQ(input.defaultValue.getTypeInfo(), Utils::TypeInfo::get<NoValue>(true));

    const Core::PinDescriptor output = pin(gate->getOutputDescriptors(), "GenericOutput");
    EXPECT_EQ(output.description, "A generic output");
    EXPECT_EQ(output.type, Utils::TypeInfo::get<Core::IValue>(true));
    EXPECT_TRUE(output.flag);
    EXPECT_EQ(output.limit, ~uint64_t{0});
    EXPECT_TRUE(gate->isSynchronous());
}

TEST_F(GateTest, BlocksUntilEnabledThenPassesTheSameObject)
{
    const Utils::Variant value{Core::Integer(5, nullptr)};
    auto outputs = gate->run(update, {{"GenericInput", value}});
    ASSERT_EQ(outputs.size(), 1u);
    EXPECT_TRUE(outputs.at(update).empty());

    setEnable(true);
    outputs = gate->run(update, {{"GenericInput", value}});
    ASSERT_EQ(outputs.at(update).count("GenericOutput"), 1u);
    const Utils::Variant& passed = outputs.at(update).at("GenericOutput");
    EXPECT_EQ(passed.get<Core::IInteger>(true), value.get<Core::IInteger>(true)) << "no copy of the data";

    setEnable(false);
    EXPECT_TRUE(gate->run(update, {{"GenericInput", value}}).at(update).empty());
}

TEST_F(GateTest, PassesAnEmptyVariantWhenTheInputIsMissing)
{
    setEnable(true);
    const auto outputs = gate->run(update, {});
    ASSERT_EQ(outputs.at(update).count("GenericOutput"), 1u);
    EXPECT_FALSE(outputs.at(update).at("GenericOutput").isValid());
}

TEST_F(GateTest, PassesAValueInErrorStateUnchanged)
{
    setEnable(true);
    auto error = std::make_shared<Core::InvalidValueError>("broken upstream", Utils::DateTime::now());
    const Utils::Variant failed{Core::Integer(error, nullptr)};
    const auto outputs = gate->run(update, {{"GenericInput", failed}});
    const auto passed = outputs.at(update).at("GenericOutput").get<Utils::COWPtr<Core::IInteger>>(true);
    ASSERT_TRUE(passed->hasError(false));
    EXPECT_EQ(passed->getError(false), error);
}

TEST_F(GateTest, LoadAndSaveKeepEnableWhereNothingIsGiven)
{
    EXPECT_FALSE(savedEnable());
    gate->load(nullptr);
    gate->load(std::make_shared<Core::MemorySettings>());
    EXPECT_FALSE(savedEnable());
    setEnable(true);
    EXPECT_TRUE(savedEnable());
    gate->load(std::make_shared<Core::MemorySettings>());
    EXPECT_TRUE(savedEnable());
    gate->save(nullptr);
}

TEST_F(GateTest, OutputTakesTheTypeOfTheConfiguredInput)
{
    const auto integer = Utils::TypeInfo::get<Core::IInteger>(true);
    gate->configureInputType("GenericInput", integer);
    EXPECT_EQ(pin(gate->getOutputDescriptors(), "GenericOutput").type, integer);
    EXPECT_EQ(pin(gate->getOutputDescriptors(), "GenericOutput").description, "A generic output");
    EXPECT_TRUE(gate->isConfigured("GenericInput"));

    gate->unconfigureInputType("GenericInput");
    EXPECT_EQ(pin(gate->getOutputDescriptors(), "GenericOutput").type,
              Utils::TypeInfo::get<Core::IValue>(true));
    EXPECT_FALSE(gate->isConfigured("GenericInput"));

    EXPECT_THROW(gate->configureInputType("GenericOutput", integer), GenICam::InvalidArgumentException);
    EXPECT_EQ(gate->getOutputDescriptors().size(), 1u);
}

TEST_F(GateTest, ReportsItsOwnTypeAndAddress)
{
    const Utils::TypeInfo type = gate->getTypeInfo(true);
    EXPECT_EQ(type.getName(), GenICam::gcstring("TarvikViewerTessalPackage::Gate"));
    void* const raw = gate->getRawPointer();
    EXPECT_EQ(Utils::type_cast(raw, type, Utils::TypeInfo::get<Core::INode>(true)), gate.get());
    EXPECT_NE(Utils::type_cast(raw, type, Utils::TypeInfo::get<Core::INodeMapContainer>(true)), nullptr);
}

TEST_F(GateTest, PublishesEnableInItsNodeMapOnTheNodesLock)
{
    GenApi::INodeMap* const nodeMap = NodeTestSupport::tessalNodeMap(*gate);
    ASSERT_NE(nodeMap, nullptr);
    EXPECT_EQ(NodeTestSupport::rootFeatureNames(*nodeMap), std::vector<std::string>{"Enable"});
    GenApi::CBooleanPtr enable = nodeMap->GetNode("Enable");
    EXPECT_EQ(enable->GetNode()->GetToolTip(), "Enable passthrough of data");
    EXPECT_EQ(enable->GetNode()->GetVisibility(), GenApi::Guru);
    EXPECT_FALSE(enable->GetValue());

    const auto* const base = static_cast<Core::NodeBase*>(Utils::type_cast(
        gate->getRawPointer(), gate->getTypeInfo(true), Utils::TypeInfo::get<Core::NodeBase>(true)));
    const auto lock = std::dynamic_pointer_cast<Threading::RecursiveCLock>(base->getLock());
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(&nodeMap->GetLock(), &lock->getLock()) << "one lock for the node and its map";
}

TEST_F(GateTest, ClientWritesReachRunAndEachRealChangeNotifiesOnce)
{
    GenApi::INodeMap* const nodeMap = NodeTestSupport::tessalNodeMap(*gate);
    ASSERT_NE(nodeMap, nullptr);
    GenApi::CBooleanPtr enable = nodeMap->GetNode("Enable");
    enable->SetValue(true);
    EXPECT_TRUE(savedEnable());
    const Utils::Variant value{Core::Integer(5, nullptr)};
    EXPECT_EQ(gate->run(update, {{"GenericInput", value}}).at(update).count("GenericOutput"), 1u);

    int callbacks = 0;
    GenApi::Register(enable->GetNode(), [&](GenApi::INode*) { ++callbacks; });
    const struct
    {
        bool value;
        int callbacks;
    } changes[] = {{true, 0}, {false, 1}, {false, 0}, {true, 1}};
    for (const auto& change : changes)
    {
        callbacks = 0;
        setEnable(change.value);
        EXPECT_EQ(callbacks, change.callbacks) << "setEnable(" << change.value << ")";
        EXPECT_EQ(enable->GetValue(), change.value);
    }
}
