// The address table of a shared port: which node-map port serves which block. Entries
// are added while the node map is wired, then sorted once; from then on accesses are
// served and the table takes no more entries.
#pragma once

#include <cstdint>
#include <vector>

namespace AnythingToNodeMapAdapter::Detail
{

class CBasicNodeMapPort;

class CMultiParameterPortDemultiplexer
{
public:
    struct PortEntry
    {
        int64_t start;
        int64_t length;
        CBasicNodeMapPort* port; // not owned; null once disconnected
    };

    virtual ~CMultiParameterPortDemultiplexer() = default;

    // Adds the block of port, unless the table is complete or port is null.
    void add(CBasicNodeMapPort* port);
    // Sets the port of the first entry whose block holds port's block to null; the entry stays.
    void remove(const CBasicNodeMapPort* port);
    // Sorts the entries by start: accesses are served from now on.
    void finish();
    // Empties the table and makes it incomplete again.
    void clear();

    // The first entry that holds the access [address, address + length) whole, or null.
    // Nothing is found before finish, and nothing for a negative length.
    const PortEntry* find(int64_t address, int64_t length) const;

    bool isSorted() const { return m_sorted; }
    const std::vector<PortEntry>& entries() const { return m_entries; }

private:
    bool m_sorted = false;
    std::vector<PortEntry> m_entries;
};

} // namespace AnythingToNodeMapAdapter::Detail
