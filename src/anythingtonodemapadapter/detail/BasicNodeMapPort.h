// The node-map port of one parameter: it serves the parameter's register block at
// block-relative addresses, prints the parameter's part of the register description,
// remembers where that text placed the block, and carries the relations that the text
// turns into pointer elements.
//
// Not thread-safe by itself: register accesses run under the node map's lock, which is
// the node's lock; placing and printing happen while the node map is built.
#pragma once

#include "NodeMapPortConnector.h"

#include <GCBase/GCString.h>

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <ostream>

namespace AnythingToNodeMapAdapter::Detail
{

class CBasicNodeMapPort
{
public:
    using RelationValues = std::list<GenICam::gcstring>;

    explicit CBasicNodeMapPort(int32_t mergePriority);
    virtual ~CBasicNodeMapPort();

    CBasicNodeMapPort(const CBasicNodeMapPort&) = delete;
    CBasicNodeMapPort& operator=(const CBasicNodeMapPort&) = delete;

    // Register access at block-relative addresses; nothing is ever reported.
    virtual void readRegister(void* buffer, int64_t address, int64_t length) = 0;
    virtual void writeRegister(const void* buffer, int64_t address, int64_t length) = 0;
    // The parameter's name; empty when no parameter port is attached.
    virtual const char* getName() const = 0;
    // Prints the parameter's text with registers on portName, names prefixed by prefix,
    // starting at the running address, which it advances by the block length.
    virtual void writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                          const GenICam::gcstring& prefix, int64_t& address) = 0;
    // Gives the port its final port name, address and length while printing it.
    virtual void placeAndWriteXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                                  const GenICam::gcstring& prefix, int64_t& address);
    // prefix, name, then "Port": the name of the port of its own.
    virtual GenICam::gcstring makePortName(const GenICam::gcstring& prefix) const;

    const GenICam::gcstring& getPortName() const { return m_portName; }
    int64_t getAddress() const { return m_address; }
    int64_t getLength() const { return m_length; }
    int32_t getMergePriority() const { return m_mergePriority; }

    // Appends value to the relation key; repeats are kept in order.
    void addRelation(const GenICam::gcstring& key, const GenICam::gcstring& value);
    // The values of a relation in order of insertion; empty for an unknown key.
    const RelationValues& getRelation(const GenICam::gcstring& key) const;

    void setConnector(std::shared_ptr<CNodeMapPortConnector> connector)
    {
        m_connector = std::move(connector);
    }
    const std::shared_ptr<CNodeMapPortConnector>& getConnector() const { return m_connector; }
    // Disconnects from the real port, if any, and forgets it.
    void detachConnector();

protected:
    // A changed parameter reaches the node map through the connector; unconnected, nobody hears.
    void tellConnector();

private:
    GenICam::gcstring m_portName;
    int64_t m_address = 0;
    int64_t m_length = 0;
    int32_t m_mergePriority;
    std::map<GenICam::gcstring, RelationValues> m_relations;
    std::shared_ptr<CNodeMapPortConnector> m_connector;
};

} // namespace AnythingToNodeMapAdapter::Detail
