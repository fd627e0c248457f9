// A value node whose value is either a constant of the document or the value
// of another node (pValue): Integer, Float, Boolean, Enumeration. Without a
// pointer it is always readable and writable and holds its value itself; with
// one it reads that node and takes its access and caching from it.
#pragma once

#include "Node.h"

#include <vector>

namespace GenApi::Detail
{

class CValueOrPointerNode : public CValueNode
{
public:
    using CValueNode::CValueNode;

    void CollectReads(std::vector<CNode*>& reads) const override
    {
        CValueNode::CollectReads(reads);
        if (ValueChild() != nullptr)
            reads.push_back(ValueChild());
    }
    ECachingMode CachingMode() const override
    {
        return ValueChild() != nullptr ? CValueNode::CachingMode() : WriteThrough;
    }
    bool CacheValid() const override { return ValueChild() == nullptr || CValueNode::CacheValid(); }

protected:
    EAccessMode OwnAccessMode(EIntent intent) const override
    {
        const CNode* child = ValueChild();
        return child != nullptr ? child->AccessMode(intent) : RW;
    }
};

} // namespace GenApi::Detail
