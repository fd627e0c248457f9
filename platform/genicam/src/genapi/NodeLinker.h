// Turns the node names of a loaded document into nodes, with failures that
// name the referring node, the element and the missing or unfit target.
#pragma once

#include <GCBase/GCString.h>

#include <vector>

namespace GenApi::Detail
{

class CNode;
class CNodeMap;
class CPortNode;

class CNodeLinker
{
public:
    explicit CNodeLinker(const CNodeMap& map)
        : m_map(map)
    {
    }

    // The node of that name; a failure if there is none.
    CNode* Node(const CNode& owner, const char* element, const GenICam::gcstring& name) const;
    std::vector<CNode*> Nodes(const CNode& owner, const char* element,
                              const std::vector<GenICam::gcstring>& names) const;
    // A node with a numeric value (integer, float, boolean, enumeration or register).
    CNode* Numeric(const CNode& owner, const char* element, const GenICam::gcstring& name) const;
    CPortNode* Port(const CNode& owner, const char* element, const GenICam::gcstring& name) const;

private:
    const CNodeMap& m_map;
};

} // namespace GenApi::Detail
