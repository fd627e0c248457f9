// Where a node's deliveries outside run() go: the graph takes each as a job that
// hands values on as the outputs of an update, and tells a node when it is full.
#pragma once

#include <TarvikDataProcessingCore/core/INode.h>

#include <functional>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API IJobQueue
{
public:
    virtual ~IJobQueue();
    // Runs `function` unless it is empty, then delivers `values` as the outputs of
    // `update` from `node`. False when the job was not taken. May raise.
    virtual bool createJob(INode& node, const std::shared_ptr<IGraphUpdate>& update, const ValueMap& values,
                           const std::function<void()>& function) = 0;
    // Blocks while the graph has no room for another job of `node`; false means: do not deliver.
    virtual bool waitUntilSpaceAvailable(INode& node) = 0;
};

} // namespace Tarvik::DataProcessing::Core
