// The real port behind the Port node of one parameter: the node map reads and writes
// the parameter's registers through it, at the addresses of the parameter's own block,
// and the parameter's node-map port invalidates that Port node through it.
//
// Runs under the node map's lock, which is the node's lock; it takes none of its own.
#pragma once

#include "NodeMapPortConnector.h"

#include <GenApi/INodeMap.h>
#include <GenApi/PortImpl.h>

#include <GCBase/GCString.h>

namespace AnythingToNodeMapAdapter::Detail
{

class CRealNodeMapPortSingleParameter final : public CNodeMapPortConnector, public GenApi::CPortImpl
{
public:
    // nodeMap is not owned; nothing is called on it but Connect.
    explicit CRealNodeMapPortSingleParameter(GenApi::INodeMap* nodeMap);
    ~CRealNodeMapPortSingleParameter() override;

    // Links this port to the Port node named by port's port name and serves port.
    void connect(CBasicNodeMapPort* port) override;
    // Cuts the link made by connect. The name is the one connect used, even if placing
    // the port again has given it another one since.
    void disconnect(CBasicNodeMapPort* port) override;
    // Invalidates the Port node, and through it every register of the parameter.
    void onPortChanged(CBasicNodeMapPort* port) override;

    // Always RW, connected or not: what a register may do is the register's to say.
    GenApi::EAccessMode GetAccessMode() const override;
    // Without a target a read gives zeros and a write does nothing, as on a shared port.
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

private:
    CBasicNodeMapPort* m_port = nullptr;
    GenApi::INodeMap* m_nodeMap;
    GenICam::gcstring m_connectedName;
};

} // namespace AnythingToNodeMapAdapter::Detail
