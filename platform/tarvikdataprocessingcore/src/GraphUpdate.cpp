#include <TarvikDataProcessingCore/core/GraphUpdate.h>

#include <atomic>

namespace Tarvik::DataProcessing::Core
{

namespace
{
std::atomic<uint64_t> nextUpdateId{1};
} // namespace

IGraphUpdate::~IGraphUpdate() = default;
IUpdateFactory::~IUpdateFactory() = default;

GraphUpdate::GraphUpdate(std::vector<std::shared_ptr<IGraphUpdate>> parents)
    : m_id(nextUpdateId.fetch_add(1, std::memory_order_relaxed))
    , m_parents(std::move(parents))
{
}

GraphUpdate::~GraphUpdate() = default;

} // namespace Tarvik::DataProcessing::Core
