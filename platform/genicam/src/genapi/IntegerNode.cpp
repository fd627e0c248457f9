#include "IntegerNode.h"

#include "NodeMap.h"
#include "RangeCheck.h"
#include "Text.h"

#include <GCBase/GCException.h>

#include <algorithm>
#include <cinttypes>

namespace GenApi::Detail
{

std::optional<ERepresentation> ReadIntegerRepresentation(CElementReader& reader)
{
    return reader.Word<ERepresentation>("Representation", {{"Linear", Linear},
                                                           {"Logarithmic", Logarithmic},
                                                           {"Boolean", Boolean},
                                                           {"PureNumber", PureNumber},
                                                           {"HexNumber", HexNumber},
                                                           {"IPV4Address", IPV4Address},
                                                           {"MACAddress", MACAddress}});
}

void CIntegerNode::Load(CElementReader& reader)
{
    CValueNode::Load(reader);
    m_value.Load(reader, "Value", "pValue");
    if (!m_value.IsPresent())
        throw PROPERTY_EXCEPTION("[%s] has neither Value nor pValue", Name().c_str());
    m_min.Load(reader, "Min", "pMin");
    m_max.Load(reader, "Max", "pMax");
    m_inc.Load(reader, "Inc", "pInc");
    m_unit = reader.Text("Unit").value_or("");
    m_representation = ReadIntegerRepresentation(reader).value_or(PureNumber);
}

void CIntegerNode::Link(CNodeLinker& linker)
{
    CValueNode::Link(linker);
    for (CValueOrPointer<int64_t>* property : {&m_value, &m_min, &m_max, &m_inc})
        property->Link(linker, *this);
}

void CIntegerNode::CollectReads(std::vector<CNode*>& reads) const
{
    CValueNode::CollectReads(reads);
    for (const CValueOrPointer<int64_t>* property : {&m_value, &m_min, &m_max, &m_inc})
        if (property->Pointer() != nullptr)
            reads.push_back(property->Pointer());
}

void CIntegerNode::Verify() const
{
    if (m_min.Constant() && m_max.Constant() && *m_min.Constant() > *m_max.Constant())
        throw PROPERTY_EXCEPTION("[%s] Min %" PRId64 " is above Max %" PRId64, Name().c_str(),
                                 *m_min.Constant(), *m_max.Constant());
    if (m_inc.Constant() && *m_inc.Constant() <= 0)
        throw PROPERTY_EXCEPTION("[%s] Inc %" PRId64 " is not positive", Name().c_str(), *m_inc.Constant());
}

EAccessMode CIntegerNode::OwnAccessMode(EIntent intent) const
{
    return m_value.Pointer() != nullptr ? m_value.Pointer()->AccessMode(intent) : RW;
}

ECachingMode CIntegerNode::CachingMode() const
{
    return m_value.Pointer() != nullptr ? CValueNode::CachingMode() : WriteThrough;
}

bool CIntegerNode::CacheValid() const
{
    return m_value.Pointer() == nullptr || CValueNode::CacheValid();
}

int64_t CIntegerNode::IntegerMin() const
{
    const int64_t min = m_min.IsPresent()              ? m_min.Get(false)
                        : m_value.Pointer() != nullptr ? m_value.Pointer()->IntegerMin()
                                                       : std::numeric_limits<int64_t>::min();
    return std::max(min, m_imposedMin);
}

int64_t CIntegerNode::IntegerMax() const
{
    const int64_t max = m_max.IsPresent()              ? m_max.Get(false)
                        : m_value.Pointer() != nullptr ? m_value.Pointer()->IntegerMax()
                                                       : std::numeric_limits<int64_t>::max();
    return std::min(max, m_imposedMax);
}

int64_t CIntegerNode::Inc() const
{
    return m_inc.IsPresent() ? m_inc.Get(false) : 1;
}

int64_t CIntegerNode::Read(bool verify, bool ignoreCache) const
{
    RequireReadable();
    const int64_t value = m_value.Get(ignoreCache);
    if (verify)
        CheckIntegerRange(*this, value, IntegerMin(), IntegerMax(), Inc());
    return value;
}

int64_t CIntegerNode::ReadInteger(bool ignoreCache) const
{
    return Read(false, ignoreCache);
}

void CIntegerNode::WriteInteger(int64_t value, bool verify)
{
    RequireWritable();
    if (verify)
        CheckIntegerRange(*this, value, IntegerMin(), IntegerMax(), Inc());
    m_value.Set(value, verify);
    m_map.ScheduleInvalidation(this);
}

void CIntegerNode::SetValue(int64_t Value, bool Verify)
{
    m_map.Access([&] { WriteInteger(Value, Verify); });
}

int64_t CIntegerNode::GetValue(bool Verify, bool IgnoreCache) const
{
    return m_map.Access([&] { return Read(Verify, IgnoreCache); });
}

int64_t CIntegerNode::GetMin() const
{
    return m_map.Access([&] { return IntegerMin(); });
}

int64_t CIntegerNode::GetMax() const
{
    return m_map.Access([&] { return IntegerMax(); });
}

int64_t CIntegerNode::GetInc() const
{
    return m_map.Access([&] { return Inc(); });
}

std::vector<int64_t> CIntegerNode::GetListOfValidValues(bool /*Bounded*/) const
{
    return {};
}

void CIntegerNode::ImposeMin(int64_t Value)
{
    m_map.Access(
        [&]
        {
            m_imposedMin = Value;
            m_map.ScheduleInvalidation(this);
        });
}

void CIntegerNode::ImposeMax(int64_t Value)
{
    m_map.Access(
        [&]
        {
            m_imposedMax = Value;
            m_map.ScheduleInvalidation(this);
        });
}

GenICam::gcstring CIntegerNode::ValueToString(bool verify, bool ignoreCache)
{
    const int64_t value = Read(verify, ignoreCache);
    return m_representation == HexNumber ? FormatHex(value) : FormatInteger(value);
}

void CIntegerNode::ValueFromString(const GenICam::gcstring& text, bool verify)
{
    const std::optional<int64_t> value = ParseInteger(text.view());
    if (!value)
        throw INVALID_ARGUMENT_EXCEPTION("[%s] cannot take '%s': it is not an integer", Name().c_str(),
                                         text.c_str());
    WriteInteger(*value, verify);
}

} // namespace GenApi::Detail
