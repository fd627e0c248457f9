// What the framework lends its nodes: where their image memory comes from, and
// where their deliveries outside run() go.
#pragma once

#include <TarvikDataProcessingCore/core/IBuffer.h>

#include <memory>

namespace Tarvik::DataProcessing::Core
{

class IUpdateFactory;
class IJobQueue;

class TDPC_API IResourcePool
{
public:
    virtual ~IResourcePool();
    virtual std::shared_ptr<IBufferProvider> getBufferProvider() = 0;
    // The graph's side of deliveries outside run(). Null, the default, leaves them to
    // the node base: updates for running nodes, jobs straight to the node's output sink.
    virtual std::shared_ptr<IUpdateFactory> getUpdateFactory();
    virtual std::shared_ptr<IJobQueue> getJobQueue();
};

// A pool around one buffer provider, by default an AlignedBufferProvider, and an
// optional update factory and job queue.
class TDPC_API ResourcePool : public IResourcePool
{
public:
    explicit ResourcePool(std::shared_ptr<IBufferProvider> provider = nullptr,
                          std::shared_ptr<IUpdateFactory> updateFactory = nullptr,
                          std::shared_ptr<IJobQueue> jobQueue = nullptr);
    ~ResourcePool() override;
    std::shared_ptr<IBufferProvider> getBufferProvider() override;
    std::shared_ptr<IUpdateFactory> getUpdateFactory() override;
    std::shared_ptr<IJobQueue> getJobQueue() override;

private:
    std::shared_ptr<IBufferProvider> m_provider;
    std::shared_ptr<IUpdateFactory> m_updateFactory;
    std::shared_ptr<IJobQueue> m_jobQueue;
};

} // namespace Tarvik::DataProcessing::Core
