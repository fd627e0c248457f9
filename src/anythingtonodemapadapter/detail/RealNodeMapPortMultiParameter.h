// The real port behind the one shared Port node: it finds the parameter of an access by
// its address and hands the access on at the address relative to that parameter's block.
// A change of a parameter invalidates that parameter's feature only.
//
// Runs under the node map's lock, which is the node's lock; it takes none of its own.
#pragma once

#include "MultiParameterPortDemultiplexer.h"
#include "NodeMapPortConnector.h"

#include <GenApi/INodeMap.h>
#include <GenApi/PortImpl.h>

#include <GCBase/GCString.h>

namespace AnythingToNodeMapAdapter::Detail
{

class CRealNodeMapPortMultiParameter final : public CNodeMapPortConnector, public GenApi::CPortImpl
{
public:
    // Links itself to the Port node portName of nodeMap (not owned) at once.
    CRealNodeMapPortMultiParameter(GenApi::INodeMap* nodeMap, const GenICam::gcstring& portName);
    ~CRealNodeMapPortMultiParameter() override;

    // Adds port's block to the table while it is not finished; the node map is not touched.
    void connect(CBasicNodeMapPort* port) override;
    // Leaves port's block in the table without a target.
    void disconnect(CBasicNodeMapPort* port) override;
    // Invalidates the feature named like port's parameter, if the node map has one.
    void onPortChanged(CBasicNodeMapPort* port) override;

    // Completes the table: accesses are served from now on.
    void finish();
    // Unlinks from the node map and empties the table; afterwards reads give zeros.
    void reset();

    GenApi::EAccessMode GetAccessMode() const override;
    // An access is served only if it lies whole inside one block with a target; a read
    // that is not served gives zeros, a write that is not served is dropped.
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

    const CMultiParameterPortDemultiplexer& demultiplexer() const { return m_demultiplexer; }

private:
    GenApi::INodeMap* m_nodeMap;
    GenICam::gcstring m_portName;
    CMultiParameterPortDemultiplexer m_demultiplexer;
};

} // namespace AnythingToNodeMapAdapter::Detail
