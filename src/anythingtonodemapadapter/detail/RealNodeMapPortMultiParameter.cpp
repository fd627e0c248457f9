#include "RealNodeMapPortMultiParameter.h"

#include "BasicNodeMapPort.h"
#include "RegisterWords.h"

#include <GenApi/INode.h>

namespace AnythingToNodeMapAdapter::Detail
{

CRealNodeMapPortMultiParameter::CRealNodeMapPortMultiParameter(GenApi::INodeMap* nodeMap,
                                                               const GenICam::gcstring& portName)
    : m_nodeMap(nodeMap)
    , m_portName(portName)
{
    if (m_nodeMap)
    {
        m_nodeMap->Connect(static_cast<GenApi::IPort*>(this), m_portName);
    }
}

CRealNodeMapPortMultiParameter::~CRealNodeMapPortMultiParameter()
{
    reset();
}

void CRealNodeMapPortMultiParameter::connect(CBasicNodeMapPort* port)
{
    m_demultiplexer.add(port);
}

void CRealNodeMapPortMultiParameter::disconnect(CBasicNodeMapPort* port)
{
    m_demultiplexer.remove(port);
}

void CRealNodeMapPortMultiParameter::onPortChanged(CBasicNodeMapPort* port)
{
    if (!m_nodeMap || !port)
    {
        return;
    }
    if (GenApi::INode* node = m_nodeMap->GetNode(GenICam::gcstring(port->getName())))
    {
        node->InvalidateNode();
    }
}

void CRealNodeMapPortMultiParameter::finish()
{
    m_demultiplexer.finish();
}

void CRealNodeMapPortMultiParameter::reset()
{
    if (m_nodeMap)
    {
        m_nodeMap->Connect(nullptr, m_portName);
        m_nodeMap = nullptr;
    }
    m_demultiplexer.clear();
}

GenApi::EAccessMode CRealNodeMapPortMultiParameter::GetAccessMode() const
{
    return GenApi::RW;
}

void CRealNodeMapPortMultiParameter::Read(void* buffer, int64_t address, int64_t length)
{
    const auto* entry = m_demultiplexer.find(address, length);
    if (entry && entry->port)
    {
        entry->port->readRegister(buffer, address - entry->start, length);
    }
    else
    {
        zeroFill(buffer, length);
    }
}

void CRealNodeMapPortMultiParameter::Write(const void* buffer, int64_t address, int64_t length)
{
    const auto* entry = m_demultiplexer.find(address, length);
    if (entry && entry->port)
    {
        entry->port->writeRegister(buffer, address - entry->start, length);
    }
}

} // namespace AnythingToNodeMapAdapter::Detail
