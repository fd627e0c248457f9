#include "BasicNodeMapPort.h"

namespace AnythingToNodeMapAdapter::Detail
{

CBasicNodeMapPort::CBasicNodeMapPort(int32_t mergePriority)
    : m_mergePriority(mergePriority)
{
}

CBasicNodeMapPort::~CBasicNodeMapPort() = default;

void CBasicNodeMapPort::placeAndWriteXml(std::ostream& stream, bool ownPort,
                                         const GenICam::gcstring& portName, const GenICam::gcstring& prefix,
                                         int64_t& address)
{
    const int64_t start = address;
    m_portName = ownPort ? makePortName(prefix) : GenICam::gcstring();
    writeXml(stream, ownPort, ownPort ? m_portName : portName, prefix, address);
    m_address = start;
    m_length = address - start;
    if (ownPort)
    {
        address = 0;
    }
}

GenICam::gcstring CBasicNodeMapPort::makePortName(const GenICam::gcstring& prefix) const
{
    return prefix + getName() + "Port";
}

void CBasicNodeMapPort::addRelation(const GenICam::gcstring& key, const GenICam::gcstring& value)
{
    m_relations[key].push_back(value);
}

const CBasicNodeMapPort::RelationValues& CBasicNodeMapPort::getRelation(const GenICam::gcstring& key) const
{
    static const RelationValues none;
    const auto found = m_relations.find(key);
    return found == m_relations.end() ? none : found->second;
}

void CBasicNodeMapPort::detachConnector()
{
    if (m_connector)
    {
        m_connector->disconnect(this);
        m_connector.reset();
    }
}

void CBasicNodeMapPort::tellConnector()
{
    if (m_connector)
    {
        m_connector->onPortChanged(this);
    }
}

} // namespace AnythingToNodeMapAdapter::Detail
