#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/GraphUpdate.h>

namespace Tarvik::DataProcessing::Core
{

IJobQueue::~IJobQueue() = default;

namespace
{

// Gives updates only to running nodes: a stopped node has nowhere to deliver.
class RunningNodeUpdateFactory final : public IUpdateFactory
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

std::shared_ptr<IUpdateFactory> updateFactoryOf(const std::shared_ptr<IResourcePool>& pool)
{
    if (pool)
        if (std::shared_ptr<IUpdateFactory> factory = pool->getUpdateFactory())
            return factory;
    return std::make_shared<RunningNodeUpdateFactory>();
}

} // namespace

AdvancedNode::AdvancedNode(const std::shared_ptr<IResourcePool>& resourcePool)
    : m_resourcePool(resourcePool)
    , m_updateFactory(updateFactoryOf(resourcePool))
    , m_jobQueue(resourcePool ? resourcePool->getJobQueue() : nullptr)
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
    if (m_jobQueue)
        return m_jobQueue->createJob(*this, update, values, function);
    if (getState() != NodeState::Running)
        return false;
    if (function)
        function();
    return deliver(update, values);
}

bool AdvancedNode::waitUntilSpaceAvailable()
{
    if (m_jobQueue)
        return m_jobQueue->waitUntilSpaceAvailable(*this);
    // Deliveries go straight to the sink: there is room whenever the node runs.
    return getState() == NodeState::Running;
}

} // namespace Tarvik::DataProcessing::Core
