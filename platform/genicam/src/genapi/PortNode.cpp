#include "PortNode.h"

#include "ElementReader.h"
#include "NodeMap.h"

#include <GCBase/GCException.h>
#include <GenApi/IPortConstruct.h>

namespace GenApi::Detail
{

void CPortNode::Load(CElementReader& reader)
{
    CNode::Load(reader);
    reader.Word<bool>("SwapEndianess", {{"No", false}});
    reader.Word<bool>("CacheChunkData", {{"Yes", true}, {"No", false}}); // no chunk data here
}

void CPortNode::Attach(IPort* port)
{
    m_port = port;
    if (IPortConstruct* construct = dynamic_cast<IPortConstruct*>(port))
        construct->SetPortImpl(this);
}

EAccessMode CPortNode::OwnAccessMode(EIntent /*intent*/) const
{
    return m_port != nullptr ? m_port->GetAccessMode() : NA;
}

GenICam::gcstring CPortNode::DenialDetail() const
{
    return m_port == nullptr ? "port '" + Name() + "' is not connected" : GenICam::gcstring();
}

void CPortNode::ReadPort(void* buffer, int64_t address, int64_t length) const
{
    if (m_port == nullptr)
        throw ACCESS_EXCEPTION("[%s] cannot be read: the port is not connected", Name().c_str());
    m_port->Read(buffer, address, length);
}

void CPortNode::WritePort(const void* buffer, int64_t address, int64_t length) const
{
    if (m_port == nullptr)
        throw ACCESS_EXCEPTION("[%s] cannot be written: the port is not connected", Name().c_str());
    m_port->Write(buffer, address, length);
}

void CPortNode::Read(void* pBuffer, int64_t Address, int64_t Length)
{
    m_map.Access(
        [&]
        {
            RequireReadable();
            ReadPort(pBuffer, Address, Length);
        });
}

void CPortNode::Write(const void* pBuffer, int64_t Address, int64_t Length)
{
    m_map.Access(
        [&]
        {
            RequireWritable();
            WritePort(pBuffer, Address, Length);
            m_map.ScheduleInvalidation(this);
        });
}

} // namespace GenApi::Detail
