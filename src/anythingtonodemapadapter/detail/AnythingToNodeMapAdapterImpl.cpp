#include "AnythingToNodeMapAdapterImpl.h"

#include "RealNodeMapPortSingleParameter.h"

#include <GenApi/NodeMapFactory.h>

namespace AnythingToNodeMapAdapter
{

CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl::CAnythingToNodeMapAdapterImpl()
{
    m_emptyNodeMapRef = GenApi::CNodeMapFactory::CreateEmptyNodeMap();
}

CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl::~CAnythingToNodeMapAdapterImpl()
{
    if (m_multiPort)
    {
        m_multiPort->reset();
        m_multiPort.reset();
    }
    m_emptyNodeMapRef._Destroy();
    m_nodeMapRef._Destroy();
}

GenApi::CNodeMapRef CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl::createNodeMap(
    GenApi::CLock* lock, const GenICam::gcstring& portName, const GenICam::gcstring& prefix)
{
    // The former map must outlive the unlinking of its real ports below, which still
    // point at it; it goes at the end of this call unless a client holds a copy.
    const GenApi::CNodeMapRef previous(m_nodeMapRef);

    GenICam::gcstring text;
    writeDocument(text, portName, prefix, false);
    GenApi::CNodeMapFactory factory(GenApi::ContentType_Xml, text.c_str(), text.length(),
                                    GenApi::CacheUsage_Ignore, false);
    // A refused text throws here, before anything of the former wiring is touched.
    m_nodeMapRef =
        lock ? factory.CreateNodeMap(*lock, "Device", true) : factory.CreateNodeMap("Device", true);

    disconnectPorts();
    connectPorts(portName);
    return GenApi::CNodeMapRef("Device");
}

GenApi::INodeMap* CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl::getNodeMap() const
{
    return m_nodeMapRef._Ptr ? m_nodeMapRef._Ptr : m_emptyNodeMapRef._Ptr;
}

void CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl::disconnectPorts()
{
    if (m_multiPort)
    {
        m_multiPort->reset();
    }
    for (const auto& [name, port] : portTable())
    {
        port->detachConnector();
    }
}

void CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl::connectPorts(const GenICam::gcstring& portName)
{
    GenApi::INodeMap* nodeMap = m_nodeMapRef._Ptr;
    const bool ownPorts = portName.empty();
    m_multiPort =
        ownPorts ? nullptr : std::make_shared<Detail::CRealNodeMapPortMultiParameter>(nodeMap, portName);
    for (const auto& [name, port] : portTable())
    {
        if (port->getLength() <= 0)
        {
            continue; // a category has no registers to serve
        }
        if (ownPorts)
        {
            auto realPort = std::make_shared<Detail::CRealNodeMapPortSingleParameter>(nodeMap);
            realPort->connect(port.get());
            port->setConnector(std::move(realPort));
        }
        else
        {
            m_multiPort->connect(port.get());
            port->setConnector(m_multiPort);
        }
    }
    if (m_multiPort)
    {
        m_multiPort->finish();
    }
}

} // namespace AnythingToNodeMapAdapter
