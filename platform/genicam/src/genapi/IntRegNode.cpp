#include "IntRegNode.h"

#include "IntegerNode.h"
#include "NodeMap.h"
#include "RangeCheck.h"
#include "Text.h"

#include <GCBase/GCException.h>

#include <algorithm>

namespace GenApi::Detail
{

void CIntRegNode::Load(CElementReader& reader)
{
    CRegisterNode::Load(reader);
    m_signed = reader.Word<bool>("Sign", {{"Signed", true}, {"Unsigned", false}}).value_or(false);
    m_unit = reader.Text("Unit").value_or("");
    m_representation = ReadIntegerRepresentation(reader).value_or(PureNumber);
}

int64_t CIntRegNode::IntegerMin() const
{
    const int bits = static_cast<int>(Length()) * 8;
    const int64_t min = !m_signed    ? 0
                        : bits == 64 ? std::numeric_limits<int64_t>::min()
                                     : -(int64_t{1} << (bits - 1));
    return std::max(min, m_imposedMin);
}

int64_t CIntRegNode::IntegerMax() const
{
    const int bits = static_cast<int>(Length()) * 8;
    // An unsigned register of 8 bytes can hold more than int64_t; its reachable part ends here.
    const int64_t max = bits == 64 ? std::numeric_limits<int64_t>::max()
                        : m_signed ? (int64_t{1} << (bits - 1)) - 1
                                   : (int64_t{1} << bits) - 1;
    return std::min(max, m_imposedMax);
}

int64_t CIntRegNode::Read(bool verify, bool ignoreCache) const
{
    RequireReadable();
    uint8_t bytes[8];
    ReadBytes(bytes, ignoreCache);
    const size_t length = static_cast<size_t>(Length());
    const bool bigEndian = BigEndianBytes();
    uint64_t raw = 0;
    for (size_t i = 0; i < length; ++i)
    {
        const uint8_t byte = bigEndian ? bytes[i] : bytes[length - 1 - i];
        raw = (raw << 8) | byte;
    }
    const unsigned unusedBits = static_cast<unsigned>(64 - 8 * length);
    int64_t value = static_cast<int64_t>(raw);
    if (m_signed && unusedBits > 0)
        value = static_cast<int64_t>(raw << unusedBits) >> unusedBits; // arithmetic shift extends the sign
    if (verify)
        CheckIntegerRange(*this, value, IntegerMin(), IntegerMax(), 1);
    return value;
}

int64_t CIntRegNode::ReadInteger(bool ignoreCache) const
{
    return Read(false, ignoreCache);
}

void CIntRegNode::WriteInteger(int64_t value, bool verify)
{
    RequireWritable();
    if (verify)
        CheckIntegerRange(*this, value, IntegerMin(), IntegerMax(), 1);
    const size_t length = static_cast<size_t>(Length());
    const bool bigEndian = BigEndianBytes();
    uint8_t bytes[8];
    uint64_t raw = static_cast<uint64_t>(value);
    for (size_t i = 0; i < length; ++i, raw >>= 8)
        bytes[bigEndian ? length - 1 - i : i] = static_cast<uint8_t>(raw);
    WriteBytes(bytes);
}

void CIntRegNode::SetValue(int64_t Value, bool Verify)
{
    m_map.Access([&] { WriteInteger(Value, Verify); });
}

int64_t CIntRegNode::GetValue(bool Verify, bool IgnoreCache) const
{
    return m_map.Access([&] { return Read(Verify, IgnoreCache); });
}

int64_t CIntRegNode::GetMin() const
{
    return m_map.Access([&] { return IntegerMin(); });
}

int64_t CIntRegNode::GetMax() const
{
    return m_map.Access([&] { return IntegerMax(); });
}

void CIntRegNode::ImposeMin(int64_t Value)
{
    m_map.Access(
        [&]
        {
            m_imposedMin = Value;
            m_map.ScheduleInvalidation(this);
        });
}

void CIntRegNode::ImposeMax(int64_t Value)
{
    m_map.Access(
        [&]
        {
            m_imposedMax = Value;
            m_map.ScheduleInvalidation(this);
        });
}

GenICam::gcstring CIntRegNode::ValueToString(bool verify, bool ignoreCache)
{
    const int64_t value = Read(verify, ignoreCache);
    return m_representation == HexNumber ? FormatHex(value) : FormatInteger(value);
}

void CIntRegNode::ValueFromString(const GenICam::gcstring& text, bool verify)
{
    const std::optional<int64_t> value = ParseInteger(text.view());
    if (!value)
        throw INVALID_ARGUMENT_EXCEPTION("[%s] cannot take '%s': it is not an integer", Name().c_str(),
                                         text.c_str());
    WriteInteger(*value, verify);
}

} // namespace GenApi::Detail
