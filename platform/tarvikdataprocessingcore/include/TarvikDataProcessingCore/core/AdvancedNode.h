// The base of nodes that may deliver on updates of their own: the resource
// pool, the update factory, jobs, and back-pressure. The pool given to the
// constructor may supply the update factory and the job queue (a graph runtime
// does, and so does a RecordingJobQueue in tests); without them the node base
// makes updates only while the node runs and hands jobs to its output sink.
#pragma once

#include <TarvikDataProcessingCore/core/IJobQueue.h>
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

    // The pool's factory; without one, a factory that gives updates to running nodes only.
    std::shared_ptr<IUpdateFactory> getUpdateFactory() const;
    // The pool's provider; without a pool, a shared AlignedBufferProvider.
    std::shared_ptr<IBufferProvider> getBufferProvider() const;
    const std::shared_ptr<IResourcePool>& getResourcePool() const { return m_resourcePool; }

protected:
    // Delivers `values` as the outputs of `update`, after running `function` if
    // it is not empty. Through the pool's job queue if it has one; otherwise
    // false when the node is not running or has no sink. May raise.
    bool createJob(const std::shared_ptr<IGraphUpdate>& update, const ValueMap& values,
                   const std::function<void()>& function);
    // Blocks while the framework has no room for another job; false means: do not
    // deliver. Without a job queue there is room whenever the node runs.
    bool waitUntilSpaceAvailable();

private:
    std::shared_ptr<IResourcePool> m_resourcePool;
    std::shared_ptr<IUpdateFactory> m_updateFactory;
    std::shared_ptr<IJobQueue> m_jobQueue;
};

} // namespace Tarvik::DataProcessing::Core
