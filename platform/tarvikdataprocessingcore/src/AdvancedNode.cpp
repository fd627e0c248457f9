#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>

#include <atomic>

namespace Tarvik::DataProcessing::Core
{

IGraphUpdate::~IGraphUpdate() = default;
IUpdateFactory::~IUpdateFactory() = default;

namespace
{

class GraphUpdate final : public IGraphUpdate
{
public:
    explicit GraphUpdate(std::vector<std::shared_ptr<IGraphUpdate>> parents)
        : m_id(nextId().fetch_add(1, std::memory_order_relaxed))
        , m_parents(std::move(parents))
    {
    }
    uint64_t getId() const override { return m_id; }
    const std::vector<std::shared_ptr<IGraphUpdate>>& getParents() const override { return m_parents; }

private:
    static std::atomic<uint64_t>& nextId()
    {
        static std::atomic<uint64_t> id{1};
        return id;
    }

    uint64_t m_id;
    std::vector<std::shared_ptr<IGraphUpdate>> m_parents;
};

// Gives updates only to running nodes: a stopped node has nowhere to deliver.
class UpdateFactory final : public IUpdateFactory
{
public:
    std::shared_ptr<IGraphUpdate> createUpdate(INode* node,
                                               const std::vector<std::shared_ptr<IGraphUpdate>>& parents,
                                               const std::shared_ptr<void>&) override
    {
        if (!node || node->getState() != NodeState::Running)
            return nullptr;
        return std::make_shared<GraphUpdate>(parents);
    }
};

} // namespace

AdvancedNode::AdvancedNode(const std::shared_ptr<IResourcePool>& resourcePool)
    : m_resourcePool(resourcePool)
    , m_updateFactory(std::make_shared<UpdateFactory>())
{
}

AdvancedNode::~AdvancedNode() = default;

std::shared_ptr<IUpdateFactory> AdvancedNode::getUpdateFactory() const
{
    return m_updateFactory;
}

std::shared_ptr<IBufferProvider> AdvancedNode::getBufferProvider() const
{
    if (m_resourcePool)
        if (std::shared_ptr<IBufferProvider> provider = m_resourcePool->getBufferProvider())
            return provider;
    static const std::shared_ptr<IBufferProvider> fallback = std::make_shared<AlignedBufferProvider>();
    return fallback;
}

bool AdvancedNode::createJob(const std::shared_ptr<IGraphUpdate>& update, const ValueMap& values,
                             const std::function<void()>& function)
{
    if (getState() != NodeState::Running)
        return false;
    if (function)
        function();
    return deliver(update, values);
}

bool AdvancedNode::waitUntilSpaceAvailable()
{
    // Deliveries go straight to the sink: there is room whenever the node runs.
    return getState() == NodeState::Running;
}

} // namespace Tarvik::DataProcessing::Core
