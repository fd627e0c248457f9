#include "FloatRegNode.h"

#include "NodeMap.h"
#include "RangeCheck.h"
#include "Text.h"

#include <GCBase/GCException.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace GenApi::Detail
{

void CFloatRegNode::Load(CElementReader& reader)
{
    CRegisterNode::Load(reader);
    m_display = ReadFloatDisplay(reader);
}

double CFloatRegNode::FloatMin() const
{
    const double min =
        Length() == 4 ? -std::numeric_limits<float>::max() : std::numeric_limits<double>::lowest();
    return std::max(min, m_imposedMin);
}

double CFloatRegNode::FloatMax() const
{
    const double max = Length() == 4 ? std::numeric_limits<float>::max() : std::numeric_limits<double>::max();
    return std::min(max, m_imposedMax);
}

double CFloatRegNode::Read(bool verify, bool ignoreCache) const
{
    RequireReadable();
    uint8_t bytes[8];
    ReadBytes(bytes, ignoreCache);
    const size_t length = static_cast<size_t>(Length());
    if (BigEndianBytes())
        std::reverse(bytes, bytes + length);
    double value = 0.0;
    if (length == 4)
    {
        float single = 0.0f;
        std::memcpy(&single, bytes, sizeof single);
        value = single;
    }
    else
    {
        std::memcpy(&value, bytes, sizeof value);
    }
    if (verify)
        CheckFloatRange(*this, value, FloatMin(), FloatMax(), 0.0);
    return value;
}

double CFloatRegNode::ReadFloat(bool ignoreCache) const
{
    return Read(false, ignoreCache);
}

void CFloatRegNode::WriteFloat(double value, bool verify)
{
    RequireWritable();
    if (verify)
        CheckFloatRange(*this, value, FloatMin(), FloatMax(), 0.0);
    uint8_t bytes[8];
    const size_t length = static_cast<size_t>(Length());
    if (length == 4)
    {
        // Beyond the range of float the conversion is undefined; the device gets an infinity.
        const bool beyond = std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max();
        const float single = beyond ? std::copysign(std::numeric_limits<float>::infinity(),
                                                    static_cast<float>(value > 0 ? 1 : -1))
                                    : static_cast<float>(value);
        std::memcpy(bytes, &single, sizeof single);
    }
    else
    {
        std::memcpy(bytes, &value, sizeof value);
    }
    if (BigEndianBytes())
        std::reverse(bytes, bytes + length);
    WriteBytes(bytes);
}

void CFloatRegNode::SetValue(double Value, bool Verify)
{
    m_map.Access([&] { WriteFloat(Value, Verify); });
}

double CFloatRegNode::GetValue(bool Verify, bool IgnoreCache) const
{
    return m_map.Access([&] { return Read(Verify, IgnoreCache); });
}

double CFloatRegNode::GetMin() const
{
    return m_map.Access([&] { return FloatMin(); });
}

double CFloatRegNode::GetMax() const
{
    return m_map.Access([&] { return FloatMax(); });
}

double CFloatRegNode::GetInc() const
{
    throw ACCESS_EXCEPTION("[%s] has no increment", Name().c_str());
}

void CFloatRegNode::ImposeMin(double Value)
{
    m_map.Access(
        [&]
        {
            m_imposedMin = Value;
            m_map.ScheduleInvalidation(this);
        });
}

void CFloatRegNode::ImposeMax(double Value)
{
    m_map.Access(
        [&]
        {
            m_imposedMax = Value;
            m_map.ScheduleInvalidation(this);
        });
}

GenICam::gcstring CFloatRegNode::ValueToString(bool verify, bool ignoreCache)
{
    return FormatFloat(Read(verify, ignoreCache));
}

void CFloatRegNode::ValueFromString(const GenICam::gcstring& text, bool verify)
{
    const std::optional<double> value = ParseFloat(text.view());
    if (!value)
        throw INVALID_ARGUMENT_EXCEPTION("[%s] cannot take '%s': it is not a number", Name().c_str(),
                                         text.c_str());
    WriteFloat(*value, verify);
}

} // namespace GenApi::Detail
