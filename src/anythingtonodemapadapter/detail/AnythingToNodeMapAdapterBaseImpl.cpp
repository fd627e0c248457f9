#include "AnythingToNodeMapAdapterBaseImpl.h"

#include "RegisterDescriptionText.h"

#include <sstream>

namespace AnythingToNodeMapAdapter
{

namespace Text = Detail::RegisterDescriptionText;

CAnythingToNodeMapAdapterBase::CAnythingToNodeMapAdapterBaseImpl::~CAnythingToNodeMapAdapterBaseImpl() =
    default;

void CAnythingToNodeMapAdapterBase::CAnythingToNodeMapAdapterBaseImpl::writeDocument(
    GenICam::gcstring& text, const GenICam::gcstring& portName, const GenICam::gcstring& prefix,
    bool plain) const
{
    std::ostringstream stream;
    Text::writeHead(stream);
    const bool ownPort = portName.empty();
    int64_t address = 0;
    for (const auto& [name, port] : m_portTable)
    {
        if (!plain)
        {
            port->placeAndWriteXml(stream, ownPort, portName, prefix, address);
        }
        else if (ownPort)
        {
            // The text that placing would print, without recording the placement.
            int64_t ownAddress = 0;
            port->writeXml(stream, true, port->makePortName(prefix), prefix, ownAddress);
        }
        else
        {
            port->writeXml(stream, false, portName, prefix, address);
        }
    }
    if (!ownPort)
    {
        Text::writeSharedPort(stream, portName);
    }
    Text::writeTail(stream);
    text = stream.str();
}

} // namespace AnythingToNodeMapAdapter
