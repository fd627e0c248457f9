#include "node_test_support.h"

#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/NodeBase.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>

#include <gtest/gtest.h>

#include <utility>

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

    std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<NodeTestSupport::TestUpdate>();
};

} // namespace

// Closed, the gate outputs nothing; open, it passes what came, the very object, an
// error value unchanged and a missing input as an empty value.
TEST_F(GateTest, PassesWhatCameOnlyWhileEnabled)
{
    auto error = std::make_shared<Core::InvalidValueError>("broken upstream", Utils::DateTime::now());
    const Utils::Variant values[] = {Utils::Variant{Core::Integer(5, nullptr)},
                                     Utils::Variant{Core::Integer(error, nullptr)}};
    for (const Utils::Variant& value : values)
    {
        setEnable(false);
        auto outputs = gate->run(update, {{"GenericInput", value}});
        ASSERT_EQ(outputs.size(), 1u);
        EXPECT_TRUE(outputs.at(update).empty());

        setEnable(true);
        outputs = gate->run(update, {{"GenericInput", value}});
        ASSERT_EQ(outputs.at(update).count("GenericOutput"), 1u);
        const Utils::Variant& passed = std::as_const(outputs).at(update).at("GenericOutput");
        EXPECT_EQ(passed.get<Core::IInteger>(true), value.get<Core::IInteger>(true)) << "no copy of the data";
    }
    const auto outputs = gate->run(update, {});
    ASSERT_EQ(outputs.at(update).count("GenericOutput"), 1u);
    EXPECT_FALSE(outputs.at(update).at("GenericOutput").isValid());
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
        EXPECT_EQ(savedEnable(), change.value);
    }
    // Nothing given changes nothing.
    gate->load(nullptr);
    gate->load(std::make_shared<Core::MemorySettings>());
    gate->save(nullptr);
    EXPECT_TRUE(savedEnable());
}
