// The port table of an adapter and the writer of the whole register description.
#pragma once

#include "BasicNodeMapPort.h"

#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapterBase.h>

#include <map>
#include <memory>

namespace AnythingToNodeMapAdapter
{

class CAnythingToNodeMapAdapterBase::CAnythingToNodeMapAdapterBaseImpl
{
public:
    // Keyed by the parameter's name; the document lists ports in this order.
    using PortTable = std::map<GenICam::gcstring, std::shared_ptr<Detail::CBasicNodeMapPort>>;

    CAnythingToNodeMapAdapterBaseImpl() = default;
    virtual ~CAnythingToNodeMapAdapterBaseImpl();

    CAnythingToNodeMapAdapterBaseImpl(const CAnythingToNodeMapAdapterBaseImpl&) = delete;
    CAnythingToNodeMapAdapterBaseImpl& operator=(const CAnythingToNodeMapAdapterBaseImpl&) = delete;

    // Stores a NodeMapPort for parameterPort under the parameter's name; a null port is
    // ignored. A former port of that name is detached and destroyed first, so that it
    // cannot clear the observer of a parameter port that both share.
    template <typename NodeMapPort, typename ParameterPort>
    void addPort(std::shared_ptr<ParameterPort> parameterPort, int32_t mergePriority);

    // Writes the complete document into text. An empty portName gives each parameter a
    // port of its own, a block from address 0 and its own Port element; otherwise all
    // blocks follow one another on the shared port portName. With plain false every
    // node-map port also records its port name, address and length; with plain true
    // the ports keep what they had.
    void writeDocument(GenICam::gcstring& text, const GenICam::gcstring& portName,
                       const GenICam::gcstring& prefix, bool plain) const;

    PortTable& portTable() { return m_portTable; }
    const PortTable& portTable() const { return m_portTable; }

private:
    PortTable m_portTable;
};

template <typename NodeMapPort, typename ParameterPort>
void CAnythingToNodeMapAdapterBase::CAnythingToNodeMapAdapterBaseImpl::addPort(
    std::shared_ptr<ParameterPort> parameterPort, int32_t mergePriority)
{
    if (!parameterPort)
    {
        return;
    }
    const GenICam::gcstring name = parameterPort->getName();
    if (const auto former = m_portTable.find(name); former != m_portTable.end())
    {
        former->second->detachConnector();
        m_portTable.erase(former);
    }
    m_portTable.emplace(name, std::make_shared<NodeMapPort>(std::move(parameterPort), mergePriority));
}

} // namespace AnythingToNodeMapAdapter
