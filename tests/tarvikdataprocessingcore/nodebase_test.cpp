#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <gtest/gtest.h>

#include <system_error>

using namespace Tarvik::DataProcessing;

namespace
{

// A node that echoes its input and reports every configuration callback.
class EchoNode : public Core::AdvancedNode
{
public:
    EchoNode()
        : AdvancedNode(std::make_shared<Core::ResourcePool>())
    {
        createInput("In", "input", Utils::TypeInfo::get<Core::IValue>(true), Utils::Variant(), true, false,
                    ~0ull);
        createInput("Fixed", "not configurable", Utils::TypeInfo::get<Core::IInteger>(true), false, ~0ull);
        createOutput("Out", "output", Utils::TypeInfo::get<Core::IValue>(true), true, ~0ull);
    }
    ~EchoNode() override { cleanup(); }

    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Utils::TypeInfo::get<Core::AdvancedNode>(mustExist);
    }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }
    bool isSynchronous() const override { return false; }
    Core::UpdateOutputs run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap inputs) override
    {
        return {{update, {{"Out", inputs["In"]}}}};
    }
    void load(const std::shared_ptr<Core::ISettings>&) override {}
    void save(const std::shared_ptr<Core::ISettings>&) override {}

    bool deliverOnce(const Utils::Variant& value)
    {
        const auto update = getUpdateFactory()->createUpdate(this, {}, nullptr);
        return update && waitUntilSpaceAvailable() && createJob(update, {{"Out", value}}, nullptr);
    }

    void declareOutputAgain()
    {
        createOutput("Out", "again", Utils::TypeInfo::get<Core::IValue>(true), true, ~0ull);
    }

    std::vector<std::string> calls;
    bool failToStart = false;

protected:
    void onInputTypeConfigured(const GenICam::gcstring& pin, const Utils::TypeInfo& type) override
    {
        calls.push_back("configured " + pin.str() + " " + type.getName().str());
    }
    void onInputTypeUnconfigured(const GenICam::gcstring& pin) override
    {
        calls.push_back("unconfigured " + pin.str());
    }
    void onStarting(const Core::NodeArgumentCollection&) override
    {
        if (failToStart)
            throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
        calls.push_back("starting");
    }
    void onStopping() override { calls.push_back("stopping"); }
};

} // namespace

// A pin name is taken once per direction; only configurable inputs take a
// compatible type.
TEST(NodeBase, ConfiguresOnlyConfigurableInputsWithCompatibleTypes)
{
    EchoNode node;
    EXPECT_THROW(node.declareOutputAgain(), GenICam::InvalidArgumentException);
    EXPECT_EQ(node.getOutputDescriptors().size(), 1u);
    EXPECT_EQ(node.getOutputDescriptors()[0].description, "output");
    const auto integer = Utils::TypeInfo::get<Core::Integer>(true);
    EXPECT_TRUE(node.canConfigure("In", integer));
    EXPECT_FALSE(node.canConfigure("Fixed", integer));
    EXPECT_FALSE(node.canConfigure("Missing", integer));

    node.configureInputType("In", integer);
    EXPECT_TRUE(node.isConfigured("In"));
    node.unconfigureInputType("In");
    EXPECT_FALSE(node.isConfigured("In"));
    EXPECT_EQ(node.calls, (std::vector<std::string>{"configured In Tarvik::DataProcessing::Core::Integer",
                                                    "unconfigured In"}));

    EXPECT_THROW(node.configureInputType("Fixed", integer), GenICam::InvalidArgumentException);
    EXPECT_THROW(node.configureInputType("Missing", integer), GenICam::InvalidArgumentException);
    EXPECT_THROW(node.configureInputType("In", Utils::TypeInfo()), GenICam::InvalidArgumentException);
    EXPECT_EQ(node.calls.size(), 2u);
}

TEST(NodeBase, ANodeThatFailsToStartStaysStoppedAndIsNotStopped)
{
    EchoNode node;
    node.failToStart = true;
    EXPECT_THROW(node.start({}), std::system_error);
    EXPECT_EQ(node.getState(), Core::NodeState::Stopped);
    node.stop();
    node.failToStart = false;
    node.start({});
    node.stop();
    EXPECT_EQ(node.calls, (std::vector<std::string>{"starting", "stopping"}));
}

TEST(AdvancedNode, DeliversJobsOnlyWhileRunningAndToASink)
{
    EchoNode node;
    std::vector<uint64_t> delivered;
    EXPECT_FALSE(node.deliverOnce(Utils::Variant()));
    node.start({});
    EXPECT_FALSE(node.deliverOnce(Utils::Variant())) << "no sink attached";
    node.attachOutputSink(
        [&](const std::shared_ptr<Core::IGraphUpdate>& update, const Core::ValueMap& outputs)
        {
            ASSERT_EQ(outputs.count("Out"), 1u);
            delivered.push_back(update->getId());
        });
    EXPECT_TRUE(node.deliverOnce(Utils::Variant{Core::Integer(1, nullptr)}));
    EXPECT_TRUE(node.deliverOnce(Utils::Variant{Core::Integer(2, nullptr)}));
    ASSERT_EQ(delivered.size(), 2u);
    EXPECT_LT(delivered[0], delivered[1]);
    node.stop();
    EXPECT_FALSE(node.deliverOnce(Utils::Variant()));
}

TEST(AlignedBufferProvider, GivesAlignedWritableBuffers)
{
    Core::AlignedBufferProvider provider;
    for (size_t size : {size_t{0}, size_t{1}, size_t{63}, size_t{64}, size_t{1000003}})
    {
        const auto buffer = provider.allocate(size);
        ASSERT_NE(buffer->getData(), nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(buffer->getData()) % Core::AlignedBufferProvider::alignment,
                  0u);
        EXPECT_EQ(buffer->getSize(), size);
        std::memset(buffer->getData(), 0xA5, size);
    }
    EXPECT_THROW(provider.allocate(~size_t{0} - 8), GenICam::BadAllocException);
}
