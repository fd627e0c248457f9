// The plain update of the graph: an id and the updates it follows.
#pragma once

#include <TarvikDataProcessingCore/core/IGraphUpdate.h>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API GraphUpdate final : public IGraphUpdate
{
public:
    // Takes the next id of the process.
    explicit GraphUpdate(std::vector<std::shared_ptr<IGraphUpdate>> parents);
    ~GraphUpdate() override;

    uint64_t getId() const override { return m_id; }
    const std::vector<std::shared_ptr<IGraphUpdate>>& getParents() const override { return m_parents; }

private:
    uint64_t m_id;
    std::vector<std::shared_ptr<IGraphUpdate>> m_parents;
};

} // namespace Tarvik::DataProcessing::Core
