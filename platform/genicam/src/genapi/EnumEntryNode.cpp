#include "EnumEntryNode.h"

#include "ElementReader.h"
#include "NodeMap.h"

#include <GCBase/GCException.h>
#include <GenApi/AccessModeHelpers.h>

namespace GenApi::Detail
{

CEnumEntryNode::CEnumEntryNode(CNodeMap& map, GenICam::gcstring name, GenICam::gcstring symbolic)
    : CValueNode(map, std::move(name))
    , m_symbolic(std::move(symbolic))
{
}

void CEnumEntryNode::Load(CElementReader& reader)
{
    CValueNode::Load(reader);
    const std::optional<int64_t> value = reader.Integer("Value");
    if (!value)
        throw PROPERTY_EXCEPTION("[%s] entry has no Value", Name().c_str());
    m_value = *value;
    m_numericValue = reader.Float("NumericValue").value_or(static_cast<double>(m_value));
    if (const std::optional<GenICam::gcstring> symbolic = reader.Reference("Symbolic"))
        m_symbolic = *symbolic;
    m_selfClearing = reader.Word<bool>("IsSelfClearing", {{"Yes", true}, {"No", false}}).value_or(false);
}

bool CEnumEntryNode::IsAvailableNow() const
{
    return IsAvailable(AccessMode(EIntent::Read));
}

GenICam::gcstring CEnumEntryNode::ValueToString(bool /*verify*/)
{
    return m_symbolic;
}

void CEnumEntryNode::ValueFromString(const GenICam::gcstring& /*text*/, bool /*verify*/)
{
    throw ACCESS_EXCEPTION("[%s] cannot be written: an entry is read-only", Name().c_str());
}

} // namespace GenApi::Detail
