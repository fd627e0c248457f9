#include "MultiParameterPortDemultiplexer.h"

#include "BasicNodeMapPort.h"

#include <algorithm>

namespace AnythingToNodeMapAdapter::Detail
{
namespace
{

// Whether [address, address + length) lies inside [start, start + blockLength), without
// computing a sum that could overflow for hostile addresses.
bool holds(int64_t start, int64_t blockLength, int64_t address, int64_t length)
{
    return length >= 0 && length <= blockLength && address >= start &&
           address - start <= blockLength - length;
}

} // namespace

void CMultiParameterPortDemultiplexer::add(CBasicNodeMapPort* port)
{
    if (!m_sorted && port)
    {
        m_entries.push_back({port->getAddress(), port->getLength(), port});
    }
}

void CMultiParameterPortDemultiplexer::remove(const CBasicNodeMapPort* port)
{
    if (!port)
    {
        return;
    }
    const auto entry = std::find_if(
        m_entries.begin(), m_entries.end(),
        [&](const PortEntry& e) { return holds(e.start, e.length, port->getAddress(), port->getLength()); });
    if (entry != m_entries.end())
    {
        entry->port = nullptr;
    }
}

void CMultiParameterPortDemultiplexer::finish()
{
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [](const PortEntry& a, const PortEntry& b) { return a.start < b.start; });
    m_sorted = true;
}

void CMultiParameterPortDemultiplexer::clear()
{
    m_entries.clear();
    m_sorted = false;
}

const CMultiParameterPortDemultiplexer::PortEntry*
CMultiParameterPortDemultiplexer::find(int64_t address, int64_t length) const
{
    if (!m_sorted)
    {
        return nullptr;
    }
    const auto entry =
        std::find_if(m_entries.begin(), m_entries.end(),
                     [&](const PortEntry& e) { return holds(e.start, e.length, address, length); });
    return entry == m_entries.end() ? nullptr : &*entry;
}

} // namespace AnythingToNodeMapAdapter::Detail
