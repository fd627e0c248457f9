#include "RealNodeMapPortSingleParameter.h"

#include "BasicNodeMapPort.h"
#include "RegisterWords.h"

namespace AnythingToNodeMapAdapter::Detail
{

CRealNodeMapPortSingleParameter::CRealNodeMapPortSingleParameter(GenApi::INodeMap* nodeMap)
    : m_nodeMap(nodeMap)
{
}

CRealNodeMapPortSingleParameter::~CRealNodeMapPortSingleParameter() = default;

void CRealNodeMapPortSingleParameter::connect(CBasicNodeMapPort* port)
{
    if (port && m_nodeMap)
    {
        m_connectedName = port->getPortName();
        m_nodeMap->Connect(static_cast<GenApi::IPort*>(this), m_connectedName);
        m_port = port;
    }
}

void CRealNodeMapPortSingleParameter::disconnect(CBasicNodeMapPort* port)
{
    if (port && m_nodeMap)
    {
        m_nodeMap->Connect(nullptr, m_connectedName);
        m_port = nullptr;
    }
}

void CRealNodeMapPortSingleParameter::onPortChanged(CBasicNodeMapPort*)
{
    InvalidateNode();
}

GenApi::EAccessMode CRealNodeMapPortSingleParameter::GetAccessMode() const
{
    return GenApi::RW;
}

void CRealNodeMapPortSingleParameter::Read(void* buffer, int64_t address, int64_t length)
{
    if (m_port)
    {
        m_port->readRegister(buffer, address, length);
    }
    else
    {
        zeroFill(buffer, length);
    }
}

void CRealNodeMapPortSingleParameter::Write(const void* buffer, int64_t address, int64_t length)
{
    if (m_port)
    {
        m_port->writeRegister(buffer, address, length);
    }
}

} // namespace AnythingToNodeMapAdapter::Detail
