#include "CategoryNode.h"

#include "ElementReader.h"
#include "NodeLinker.h"
#include "NodeMap.h"

#include <GCBase/GCException.h>

namespace GenApi::Detail
{

void CCategoryNode::Load(CElementReader& reader)
{
    CValueNode::Load(reader);
    m_featureNames = reader.References("pFeature");
}

void CCategoryNode::Link(CNodeLinker& linker)
{
    CValueNode::Link(linker);
    m_features = linker.Nodes(*this, "pFeature", m_featureNames);
    for (CNode* feature : m_features)
        feature->MarkAsFeature();
}

void CCategoryNode::GetFeatures(FeatureList_t& Features) const
{
    m_map.Access(
        [&]
        {
            Features.clear();
            for (CNode* feature : m_features)
                if (IValue* value = dynamic_cast<IValue*>(feature))
                    Features.push_back(value);
        });
}

GenICam::gcstring CCategoryNode::ValueToString(bool /*verify*/)
{
    RequireReadable();
    return GenICam::gcstring();
}

void CCategoryNode::ValueFromString(const GenICam::gcstring& /*text*/, bool /*verify*/)
{
    throw ACCESS_EXCEPTION("[%s] cannot be written: a category has no value", Name().c_str());
}

} // namespace GenApi::Detail
