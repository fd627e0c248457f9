#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapterBase.h>

#include "detail/AnythingToNodeMapAdapterBaseImpl.h"
#include "detail/CategoryNodeMapPort.h"
#include "detail/DataNodeMapPort.h"

namespace AnythingToNodeMapAdapter
{

CAnythingToNodeMapAdapterBase::CAnythingToNodeMapAdapterBase(CAnythingToNodeMapAdapterBaseImpl* impl)
    : m_impl(impl)
{
}

CAnythingToNodeMapAdapterBase::~CAnythingToNodeMapAdapterBase() = default;

void CAnythingToNodeMapAdapterBase::getRegisterDescription(GenICam::gcstring& text,
                                                           const GenICam::gcstring& portName,
                                                           const GenICam::gcstring& prefix) const
{
    m_impl->writeDocument(text, portName, prefix, true);
}

void CAnythingToNodeMapAdapterBase::addParameterPort(std::shared_ptr<ICategoryParameterPort> port,
                                                     int32_t mergePriority)
{
    m_impl->addPort<Detail::CCategoryNodeMapPort>(std::move(port), mergePriority);
}

void CAnythingToNodeMapAdapterBase::addParameterPort(std::shared_ptr<IBooleanParameterPort> port,
                                                     int32_t mergePriority)
{
    m_impl->addPort<Detail::CBooleanNodeMapPort>(std::move(port), mergePriority);
}

void CAnythingToNodeMapAdapterBase::addParameterPort(std::shared_ptr<IIntegerParameterPort> port,
                                                     int32_t mergePriority)
{
    m_impl->addPort<Detail::CIntegerNodeMapPort>(std::move(port), mergePriority);
}

void CAnythingToNodeMapAdapterBase::addParameterPort(std::shared_ptr<IFloatParameterPort> port,
                                                     int32_t mergePriority)
{
    m_impl->addPort<Detail::CFloatNodeMapPort>(std::move(port), mergePriority);
}

void CAnythingToNodeMapAdapterBase::addRelation(const GenICam::gcstring& key, const GenICam::gcstring& owner,
                                                const GenICam::gcstring& value)
{
    const auto& table = m_impl->portTable();
    if (const auto found = table.find(owner); found != table.end())
    {
        found->second->addRelation(key, value);
    }
}

} // namespace AnythingToNodeMapAdapter
