// The base of nodes that may deliver on updates of their own: the resource
// pool, the update factory, jobs, and back-pressure.
#pragma once

#include <TarvikDataProcessingCore/core/IResourcePool.h>
#include <TarvikDataProcessingCore/core/NodeBase.h>

#include <functional>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API AdvancedNode : public NodeBase
{
public:
    explicit AdvancedNode(const std::shared_ptr<IResourcePool>& resourcePool);
    ~AdvancedNode() override;

    std::shared_ptr<IUpdateFactory> getUpdateFactory() const;
    // The pool's provider; without a pool, a shared AlignedBufferProvider.
    std::shared_ptr<IBufferProvider> getBufferProvider() const;
    const std::shared_ptr<IResourcePool>& getResourcePool() const { return m_resourcePool; }

protected:
    // Delivers `values` as the outputs of `update`, after running `function` if
    // it is not empty. False when the node is not running or has no sink.
    bool createJob(const std::shared_ptr<IGraphUpdate>& update, const ValueMap& values,
                   const std::function<void()>& function);
    // Blocks while the framework has no room for another job; false means: do
    // not deliver (the node is stopping).
    bool waitUntilSpaceAvailable();

private:
    std::shared_ptr<IResourcePool> m_resourcePool;
    std::shared_ptr<IUpdateFactory> m_updateFactory;
};

} // namespace Tarvik::DataProcessing::Core
