#include "RegisterNode.h"

#include "ElementReader.h"
#include "NodeLinker.h"
#include "NodeMap.h"
#include "PortNode.h"
#include "Text.h"

#include <GCBase/GCException.h>
#include <GenApi/AccessModeHelpers.h>

#include <cinttypes>

namespace GenApi::Detail
{

void CRegisterNode::Load(CElementReader& reader)
{
    CValueNode::Load(reader);
    for (const GenICam::gcstring& text : reader.Texts("Address"))
    {
        const std::optional<int64_t> address = ParseInteger(text.view());
        if (!address)
            reader.FailElement("Address", text, "is not a decimal or 0x-prefixed hexadecimal integer");
        m_addresses.push_back(*address);
    }
    m_addressNodeNames = reader.References("pAddress");
    if (m_addresses.empty() && m_addressNodeNames.empty())
        throw PROPERTY_EXCEPTION("[%s] register has no Address", Name().c_str());

    const std::optional<int64_t> length = reader.Integer("Length");
    if (!length)
        throw PROPERTY_EXCEPTION("[%s] register has no Length", Name().c_str());
    if (!IsValidLength(*length))
        throw PROPERTY_EXCEPTION("[%s] Length %" PRId64 " is not %s", Name().c_str(), *length,
                                 ValidLengths());
    m_length = *length;

    m_accessMode = reader.Word<EAccessMode>("AccessMode", {{"RO", RO}, {"WO", WO}, {"RW", RW}}).value_or(RO);
    const std::optional<GenICam::gcstring> port = reader.Reference("pPort");
    if (!port)
        throw PROPERTY_EXCEPTION("[%s] register has no pPort", Name().c_str());
    m_portName = *port;
    m_cachingMode = reader
                        .Word<ECachingMode>("Cachable", {{"NoCache", NoCache},
                                                         {"WriteThrough", WriteThrough},
                                                         {"WriteAround", WriteAround}})
                        .value_or(WriteThrough);
    reader.Integer("PollingTime"); // no polling in this runtime
    reader.Word<bool>("Endianess", {{"LittleEndian", true}});
}

void CRegisterNode::Link(CNodeLinker& linker)
{
    CValueNode::Link(linker);
    m_port = linker.Port(*this, "pPort", m_portName);
    for (const GenICam::gcstring& name : m_addressNodeNames)
        m_addressNodes.push_back(linker.Numeric(*this, "pAddress", name));
}

void CRegisterNode::CollectReads(std::vector<CNode*>& reads) const
{
    CValueNode::CollectReads(reads);
    reads.push_back(m_port);
    reads.insert(reads.end(), m_addressNodes.begin(), m_addressNodes.end());
}

EAccessMode CRegisterNode::OwnAccessMode(EIntent intent) const
{
    return Combine(m_accessMode, m_port->AccessMode(intent));
}

GenICam::gcstring CRegisterNode::DenialDetail() const
{
    return m_port->DenialDetail();
}

int64_t CRegisterNode::Address() const
{
    uint64_t address = 0; // wraps like the device's address arithmetic would
    for (int64_t part : m_addresses)
        address += static_cast<uint64_t>(part);
    for (const CNode* node : m_addressNodes)
        address += static_cast<uint64_t>(node->ReadInteger());
    return static_cast<int64_t>(address);
}

void CRegisterNode::ReadBytes(uint8_t* bytes) const
{
    m_port->ReadPort(bytes, Address(), m_length);
}

void CRegisterNode::WriteBytes(const uint8_t* bytes)
{
    m_port->WritePort(bytes, Address(), m_length);
    m_map.ScheduleInvalidation(this);
}

int64_t CRegisterNode::GetAddress() const
{
    return m_map.Access([&] { return Address(); });
}

void CRegisterNode::RequireLength(int64_t length, const char* verb) const
{
    if (length != m_length)
        throw INVALID_ARGUMENT_EXCEPTION("[%s] %s %" PRId64 " bytes, not %" PRId64, Name().c_str(), verb,
                                         m_length, length);
}

void CRegisterNode::Set(const uint8_t* pBuffer, int64_t Length, bool /*Verify*/)
{
    m_map.Access(
        [&]
        {
            RequireLength(Length, "takes");
            RequireWritable();
            WriteBytes(pBuffer);
        });
}

void CRegisterNode::Get(uint8_t* pBuffer, int64_t Length, bool /*Verify*/, bool /*IgnoreCache*/)
{
    m_map.Access(
        [&]
        {
            RequireLength(Length, "gives");
            RequireReadable();
            ReadBytes(pBuffer);
        });
}

} // namespace GenApi::Detail
