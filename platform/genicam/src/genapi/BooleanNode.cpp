#include "BooleanNode.h"

#include "NodeMap.h"
#include "Text.h"

#include <GCBase/GCException.h>

#include <cinttypes>

namespace GenApi::Detail
{

void CBooleanNode::Load(CElementReader& reader)
{
    CValueOrPointerNode::Load(reader);
    m_constant.Load(reader, "Value", nullptr);
    m_pointer.Load(reader, nullptr, "pValue");
    if (m_constant.IsPresent() == m_pointer.IsPresent())
        throw PROPERTY_EXCEPTION("[%s] must have either Value or pValue", Name().c_str());
    m_onValue = reader.Integer("OnValue").value_or(1);
    m_offValue = reader.Integer("OffValue").value_or(0);
}

void CBooleanNode::Link(CNodeLinker& linker)
{
    CValueOrPointerNode::Link(linker);
    m_pointer.Link(linker, *this);
}

void CBooleanNode::Verify() const
{
    if (m_onValue == m_offValue)
        throw PROPERTY_EXCEPTION("[%s] OnValue and OffValue are both %" PRId64, Name().c_str(), m_onValue);
}

bool CBooleanNode::Read() const
{
    RequireReadable();
    if (m_pointer.Pointer() == nullptr)
        return m_constant.Get();
    const int64_t value = m_pointer.Get();
    if (value == m_onValue)
        return true;
    if (value == m_offValue)
        return false;
    throw OUT_OF_RANGE_EXCEPTION("[%s] value %" PRId64 " is neither OnValue %" PRId64
                                 " nor OffValue %" PRId64,
                                 Name().c_str(), value, m_onValue, m_offValue);
}

void CBooleanNode::Write(bool value, bool verify)
{
    RequireWritable();
    if (m_pointer.Pointer() == nullptr)
        m_constant.Set(value, verify);
    else
        m_pointer.Set(value ? m_onValue : m_offValue, verify);
    m_map.ScheduleInvalidation(this);
}

void CBooleanNode::WriteNumber(int64_t value, bool verify)
{
    if (verify && value != 0 && value != 1)
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %" PRId64 " is neither 0 nor 1", Name().c_str(), value);
    Write(value != 0, verify);
}

void CBooleanNode::SetValue(bool Value, bool Verify)
{
    m_map.Access([&] { Write(Value, Verify); });
}

bool CBooleanNode::GetValue(bool /*Verify*/, bool /*IgnoreCache*/) const
{
    return m_map.Access([&] { return Read(); });
}

GenICam::gcstring CBooleanNode::ValueToString(bool /*verify*/)
{
    return Read() ? "true" : "false";
}

void CBooleanNode::ValueFromString(const GenICam::gcstring& text, bool verify)
{
    const std::optional<bool> value = ParseBoolean(text.view());
    if (!value)
        throw INVALID_ARGUMENT_EXCEPTION("[%s] cannot take '%s': it is not true, false, 1 or 0",
                                         Name().c_str(), text.c_str());
    Write(*value, verify);
}

} // namespace GenApi::Detail
