// What a benchmark needs to run a node of the built package: the package,
// loaded once for the process, and a graph update with no parents.
#pragma once

#include "built_package.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/INode.h>

#include <memory>
#include <vector>

namespace NodeRunSupport
{

// The package stays loaded for the whole process: node objects outlive no run.
inline PackageLoader& package()
{
    static PackageLoader loader(builtPackagePath());
    return loader;
}

struct NullUpdate : Tarvik::DataProcessing::Core::IGraphUpdate
{
    uint64_t getId() const override { return 1; }
    const std::vector<std::shared_ptr<IGraphUpdate>>& getParents() const override { return parents; }
    std::vector<std::shared_ptr<IGraphUpdate>> parents;
};

} // namespace NodeRunSupport
