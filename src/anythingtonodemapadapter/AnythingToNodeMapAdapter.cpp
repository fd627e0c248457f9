#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapter.h>

#include "detail/AnythingToNodeMapAdapterImpl.h"

namespace AnythingToNodeMapAdapter
{

CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapter()
    : CAnythingToNodeMapAdapter(std::make_unique<CAnythingToNodeMapAdapterImpl>())
{
}

CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapter(std::unique_ptr<CAnythingToNodeMapAdapterImpl> impl)
    : CAnythingToNodeMapAdapterBase(impl.get())
    , m_impl(std::move(impl))
{
}

CAnythingToNodeMapAdapter::~CAnythingToNodeMapAdapter() = default;

GenApi::CNodeMapRef CAnythingToNodeMapAdapter::createNodeMap(GenApi::CLock* lock,
                                                             const GenICam::gcstring& portName,
                                                             const GenICam::gcstring& prefix)
{
    return m_impl->createNodeMap(lock, portName, prefix);
}

GenApi::INodeMap* CAnythingToNodeMapAdapter::getNodeMap() const
{
    return m_impl->getNodeMap();
}

} // namespace AnythingToNodeMapAdapter
