// One update of the graph: the unit under which a node's outputs are delivered.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace Tarvik::DataProcessing::Core
{

class INode;

class TDPC_API IGraphUpdate
{
public:
    virtual ~IGraphUpdate();
    // Unique within the process, increasing in order of creation.
    virtual uint64_t getId() const = 0;
    virtual const std::vector<std::shared_ptr<IGraphUpdate>>& getParents() const = 0;
};

class TDPC_API IUpdateFactory
{
public:
    virtual ~IUpdateFactory();
    // A new update of `node` after `parents`; may be null when the graph is not running.
    // `handle` is reserved for the framework and is passed empty by nodes.
    virtual std::shared_ptr<IGraphUpdate>
    createUpdate(INode* node, const std::vector<std::shared_ptr<IGraphUpdate>>& parents,
                 const std::shared_ptr<void>& handle) = 0;
};

} // namespace Tarvik::DataProcessing::Core
