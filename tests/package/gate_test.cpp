#include "node_test_support.h"

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/NodeBase.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>

using namespace NodeTestSupport;

namespace
{

class GateTest : public ::testing::Test
{
protected:
    TestedNode gate{"Gate"};

    void setEnable(bool enable)
    {
        gate.load([enable](Core::MemorySettings& settings) { settings.setBool("Enable", enable); });
    }

    Core::ValueMap run(const Utils::Variant& value) { return gate.run({{"GenericInput", value}}); }
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
        EXPECT_TRUE(run(value).empty());

        setEnable(true);
        const Core::ValueMap outputs = run(value);
        ASSERT_EQ(outputs.count("GenericOutput"), 1u);
        EXPECT_EQ(outputs.at("GenericOutput").get<Core::IInteger>(true), value.get<Core::IInteger>(true))
            << "no copy of the data";
    }
    const auto outputs = gate.run({});
    ASSERT_EQ(outputs.count("GenericOutput"), 1u);
    EXPECT_FALSE(outputs.at("GenericOutput").isValid());
}

// Loading the package registered the node's class with the framework's bases.
TEST_F(GateTest, IsRegisteredAndKeepsItsNodeMapOnTheNodesLock)
{
    const Utils::TypeInfo type = gate.node->getTypeInfo(true);
    EXPECT_EQ(type.getName(), GenICam::gcstring("TarvikViewerTessalPackage::Gate"));
    for (const Utils::TypeInfo& base :
         {Utils::TypeInfo::get<Core::AdvancedNode>(true), Utils::TypeInfo::get<Core::NodeBase>(true),
          Utils::TypeInfo::get<Core::INode>(true), Utils::TypeInfo::get<Utils::IObject>(true),
          Utils::TypeInfo::get<Core::INodeMapContainer>(true)})
        EXPECT_TRUE(type.canConvert(base)) << base.getName();

    GenApi::INodeMap* const nodeMap = tessalNodeMap(*gate.node);
    ASSERT_NE(nodeMap, nullptr);

    const auto* const base = static_cast<Core::NodeBase*>(
        Utils::type_cast(gate.node->getRawPointer(), type, Utils::TypeInfo::get<Core::NodeBase>(true)));
    const auto lock = std::dynamic_pointer_cast<Threading::RecursiveCLock>(base->getLock());
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(&nodeMap->GetLock(), &lock->getLock()) << "one lock for the node and its map";
}
