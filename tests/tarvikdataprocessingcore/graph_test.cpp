// The graph runtime on small nodes of its own: type checks and configuration at
// build, one run per set of inputs, failures as error values, deliveries on
// updates of a node's own.
#include "failure_text.h"

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/graph/Graph.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr uint64_t unlimited = ~uint64_t{0};

class TestNode : public Core::AdvancedNode
{
public:
    using AdvancedNode::AdvancedNode;
    Utils::TypeInfo getTypeInfo(bool) const override { return {}; }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }
    bool isSynchronous() const override { return true; }
    void load(const std::shared_ptr<Core::ISettings>&) override {}
    void save(const std::shared_ptr<Core::ISettings>&) override {}
};

// Gives 0, 1, 2, ... on "Value".
class Counter : public TestNode
{
public:
    explicit Counter(const std::shared_ptr<Core::IResourcePool>& pool)
        : TestNode(pool)
    {
        createOutput("Value", "", Utils::TypeInfo::get<Core::IInteger>(true), true, unlimited);
    }
    Core::UpdateOutputs run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap) override
    {
        return {{update, {{"Value", Utils::Variant(Core::Integer(m_next++, nullptr))}}}};
    }

private:
    int64_t m_next = 0;
};

// Hands "In" on to "Out", and throws on the value 3. Without `delivering` on the
// update it came on; with it, as a job on a new update.
class Relay : public TestNode
{
public:
    Relay(const std::shared_ptr<Core::IResourcePool>& pool, bool delivering)
        : TestNode(pool)
        , m_delivering(delivering)
    {
        createInput("In", "", Utils::TypeInfo::get<Core::IValue>(true), Utils::Variant(), true, false,
                    unlimited);
        createOutput("Out", "", Utils::TypeInfo::get<Core::IValue>(true), true, unlimited);
    }
    Core::UpdateOutputs run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap inputs) override
    {
        const auto* const value = inputs["In"].get<Core::IInteger>(false);
        if (value && !value->hasError(false) && value->getValue() == 3)
            throw std::runtime_error("three");
        if (!m_delivering)
            return {{update, {{"Out", inputs["In"]}}}};
        const auto next = getUpdateFactory()->createUpdate(this, {update}, nullptr);
        if (next && waitUntilSpaceAvailable())
            createJob(next, {{"Out", inputs["In"]}}, {});
        return {{update, {}}};
    }

protected:
    void onInputTypeConfigured(const GenICam::gcstring& pin, const Utils::TypeInfo& type) override
    {
        removeOutput("Out");
        createOutput("Out", "", type, true, unlimited);
        NodeBase::onInputTypeConfigured(pin, type);
    }

private:
    bool m_delivering;
};

// Keeps what arrives on "In", with the update it came on.
template <typename T>
class Probe : public TestNode
{
public:
    explicit Probe(const std::shared_ptr<Core::IResourcePool>& pool)
        : TestNode(pool)
    {
        createInput("In", "", Utils::TypeInfo::get<T>(true), false, unlimited);
    }
    Core::UpdateOutputs run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap inputs) override
    {
        received.emplace_back(update, inputs["In"]);
        return {{update, {}}};
    }
    std::vector<std::pair<std::shared_ptr<Core::IGraphUpdate>, Utils::Variant>> received;
};

} // namespace

TEST(Graph, BuildRefusesWhatCannotFlow)
{
    {
        Core::Graph graph;
        graph.addNode("count", std::make_shared<Counter>(graph.resourcePool()));
        graph.addNode("show", std::make_shared<Probe<Core::IImage>>(graph.resourcePool()));
        graph.connect({"count", "Value"}, {"show", "In"});
        const std::string message = failureOf([&] { graph.build(); });
        EXPECT_NE(message.find("count.Value"), std::string::npos) << message;
        EXPECT_NE(message.find("show.In"), std::string::npos) << message;
    }
    {
        Core::Graph graph;
        graph.addNode("count", std::make_shared<Counter>(graph.resourcePool()));
        graph.addNode("show", std::make_shared<Probe<Core::IInteger>>(graph.resourcePool()));
        graph.connect({"count", "Valeu"}, {"show", "In"});
        EXPECT_NE(failureOf([&] { graph.build(); }).find("no output pin 'Valeu'"), std::string::npos);
    }
    {
        Core::Graph graph;
        graph.addNode("a", std::make_shared<Relay>(graph.resourcePool(), false));
        graph.addNode("b", std::make_shared<Relay>(graph.resourcePool(), false));
        graph.connect({"a", "Out"}, {"b", "In"});
        graph.connect({"b", "Out"}, {"a", "In"});
        EXPECT_NE(failureOf([&] { graph.build(); }).find("cycle"), std::string::npos);
    }
}

// The relay's generic input is configured to the counter's type, so that its
// output may feed an input of that type; a throwing run reaches the probe as an
// error value and the graph goes on.
TEST(Graph, ConfiguresGenericInputsAndHandsFailuresDownstream)
{
    Core::Graph graph;
    auto probe = std::make_shared<Probe<Core::IInteger>>(graph.resourcePool());
    graph.addNode("count", std::make_shared<Counter>(graph.resourcePool()));
    graph.addNode("relay", std::make_shared<Relay>(graph.resourcePool(), false));
    graph.addNode("show", probe);
    graph.connect({"relay", "Out"}, {"show", "In"});
    graph.connect({"count", "Value"}, {"relay", "In"});
    ASSERT_EQ(failureOf([&] { graph.build(); }), "no exception");

    graph.start();
    for (int i = 0; i < 5; ++i)
        graph.runUpdate();
    graph.stop();

    ASSERT_EQ(probe->received.size(), 5u);
    for (int64_t i = 0; i < 5; ++i)
    {
        const auto* const value = probe->received[static_cast<size_t>(i)].second.get<Core::IInteger>(false);
        ASSERT_NE(value, nullptr) << i;
        if (i == 3)
        {
            ASSERT_TRUE(value->hasError(false));
            EXPECT_EQ(std::string(value->getError(false)->getDescription().c_str()), "three");
        }
        else
            EXPECT_EQ(value->getValue(), i);
    }
    EXPECT_EQ(graph.statistics("relay").errors(), (std::map<std::string, uint64_t>{{"three", 1}}));
    EXPECT_EQ(graph.statistics("show").errorCount(), 0u) << "a handed-on error is not the probe's";
    EXPECT_EQ(graph.statistics("show").framesIn(), 5u);
}

TEST(Graph, DeliveriesOnUpdatesOfTheirOwnRunDownstream)
{
    Core::Graph graph;
    auto probe = std::make_shared<Probe<Core::IInteger>>(graph.resourcePool());
    graph.addNode("count", std::make_shared<Counter>(graph.resourcePool()));
    graph.addNode("relay", std::make_shared<Relay>(graph.resourcePool(), true));
    graph.addNode("show", probe);
    graph.connect({"count", "Value"}, {"relay", "In"});
    graph.connect({"relay", "Out"}, {"show", "In"});

    graph.start();
    std::vector<std::shared_ptr<Core::IGraphUpdate>> roots;
    for (int i = 0; i < 3; ++i)
        roots.push_back(graph.runUpdate());
    graph.stop();

    ASSERT_EQ(probe->received.size(), 3u);
    for (size_t i = 0; i < roots.size(); ++i)
    {
        EXPECT_NE(probe->received[i].first, roots[i]) << "delivered on a new update";
        EXPECT_EQ(Core::Graph::rootOf(probe->received[i].first), roots[i]);
    }
    EXPECT_EQ(graph.statistics("relay").framesOut(), 3u);
}
