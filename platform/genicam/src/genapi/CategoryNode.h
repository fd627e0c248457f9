// <Category>: a read-only node that lists features (pFeature).
#pragma once

#include "Node.h"

#include <GenApi/ICategory.h>

namespace GenApi::Detail
{

class CCategoryNode final : public CValueNode, public ICategory
{
public:
    using CValueNode::CValueNode;

    // ICategory
    void GetFeatures(FeatureList_t& Features) const override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfICategory; }

    // CNode
    void Load(CElementReader& reader) override;
    void Link(CNodeLinker& linker) override;

protected:
    EAccessMode OwnAccessMode(EIntent /*intent*/) const override { return RO; }
    GenICam::gcstring ValueToString(bool verify) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    std::vector<GenICam::gcstring> m_featureNames;
    std::vector<CNode*> m_features;
};

} // namespace GenApi::Detail
