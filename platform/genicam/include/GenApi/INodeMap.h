// GenApi::INodeMap: all nodes of one register description, guarded by one lock.
// Every access to the map and to its nodes takes that lock (GetLock), so one
// map may be used from several threads. Maps come from CNodeMapFactory and are
// held through CNodeMapRef; the map is destroyed through IDestroy.
#pragma once

#include <GCBase/GCString.h>
#include <GCBase/Synch.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/Types.h>

#include <cstdint>

namespace GenApi
{

class INode;
class IPort;

class GENAPI_API INodeMap
{
public:
    // All nodes, in document order.
    virtual void GetNodes(NodeList_t& Nodes) const = 0;
    // The node of that name, or null.
    virtual INode* GetNode(const GenICam::gcstring& Name) const = 0;
    // Invalidates every node.
    virtual void InvalidateNodes() const = 0;

    // Links pPort to the Port node PortName: from then on the registers with that
    // pPort call pPort's Read and Write. A port that implements IPortConstruct is
    // handed the Port node through SetPortImpl. A null pPort cuts the link.
    // False if there is no Port node of that name.
    virtual bool Connect(IPort* pPort, const GenICam::gcstring& PortName) const = 0;
    // Connect to the Port node "Device".
    virtual bool Connect(IPort* pPort) const = 0;

    // The name given to CNodeMapFactory::CreateNodeMap.
    virtual GenICam::gcstring GetDeviceName() const = 0;
    // Lets nodes with a polling time refresh; this runtime has none, so nothing happens.
    virtual void Poll(int64_t ElapsedTime) = 0;
    // The lock that guards the map: its own or the one given to CreateNodeMap.
    virtual CLock& GetLock() const = 0;
    virtual uint64_t GetNumNodes() const = 0;

protected:
    virtual ~INodeMap();
};

} // namespace GenApi
