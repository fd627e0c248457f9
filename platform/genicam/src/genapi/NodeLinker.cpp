#include "NodeLinker.h"

#include "NodeMap.h"
#include "PortNode.h"

#include <GCBase/GCException.h>

namespace GenApi::Detail
{

CNode* CNodeLinker::Node(const CNode& owner, const char* element, const GenICam::gcstring& name) const
{
    CNode* node = m_map.FindNode(name);
    if (node == nullptr)
        throw PROPERTY_EXCEPTION("[%s] %s names '%s', which is not a node of this document",
                                 owner.Name().c_str(), element, name.c_str());
    return node;
}

std::vector<CNode*> CNodeLinker::Nodes(const CNode& owner, const char* element,
                                       const std::vector<GenICam::gcstring>& names) const
{
    std::vector<CNode*> nodes;
    nodes.reserve(names.size());
    for (const GenICam::gcstring& name : names)
        nodes.push_back(Node(owner, element, name));
    return nodes;
}

CNode* CNodeLinker::Numeric(const CNode& owner, const char* element, const GenICam::gcstring& name) const
{
    CNode* node = Node(owner, element, name);
    if (!node->IsNumeric())
        throw PROPERTY_EXCEPTION("[%s] %s names '%s', which has no numeric value", owner.Name().c_str(),
                                 element, name.c_str());
    return node;
}

CPortNode* CNodeLinker::Port(const CNode& owner, const char* element, const GenICam::gcstring& name) const
{
    CPortNode* port = dynamic_cast<CPortNode*>(Node(owner, element, name));
    if (port == nullptr)
        throw PROPERTY_EXCEPTION("[%s] %s names '%s', which is not a Port", owner.Name().c_str(), element,
                                 name.c_str());
    return port;
}

} // namespace GenApi::Detail
