// The node-map half of the adapter: the generated map, the empty one shown before it,
// and the shared real port of the shared layout.
#pragma once

#include "AnythingToNodeMapAdapterBaseImpl.h"
#include "RealNodeMapPortMultiParameter.h"

#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapter.h>

#include <memory>

namespace AnythingToNodeMapAdapter
{

class CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl
    : public CAnythingToNodeMapAdapterBase::CAnythingToNodeMapAdapterBaseImpl
{
public:
    CAnythingToNodeMapAdapterImpl();
    // Unlinks the shared port, lets both maps go unless someone holds a copy of their
    // reference, and then the ports, which clear their parameter ports' observers.
    ~CAnythingToNodeMapAdapterImpl() override;

    GenApi::CNodeMapRef createNodeMap(GenApi::CLock* lock, const GenICam::gcstring& portName,
                                      const GenICam::gcstring& prefix);
    GenApi::INodeMap* getNodeMap() const;

    const GenApi::CNodeMapRef& nodeMapRef() const { return m_nodeMapRef; }
    const std::shared_ptr<Detail::CRealNodeMapPortMultiParameter>& multiPort() const { return m_multiPort; }

private:
    // Ends every link of the ports to the former map.
    void disconnectPorts();
    // Links every port with a register block to the current map.
    void connectPorts(const GenICam::gcstring& portName);

    GenApi::CNodeMapRef m_nodeMapRef{"Device"};
    GenApi::CNodeMapRef m_emptyNodeMapRef{"Device"};
    std::shared_ptr<Detail::CRealNodeMapPortMultiParameter> m_multiPort;
};

} // namespace AnythingToNodeMapAdapter
