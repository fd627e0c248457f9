#include "IntRegNode.h"

#include "ElementReader.h"

#include <limits>

namespace GenApi::Detail
{

void CIntRegNode::Load(CElementReader& reader)
{
    CRegisterNode::Load(reader);
    m_signed = reader.Word<bool>("Sign", {{"Signed", true}, {"Unsigned", false}}).value_or(false);
    LoadDisplay(reader);
}

int64_t CIntRegNode::Min() const
{
    const int bits = static_cast<int>(Length()) * 8;
    return !m_signed ? 0 : bits == 64 ? std::numeric_limits<int64_t>::min() : -(int64_t{1} << (bits - 1));
}

int64_t CIntRegNode::Max() const
{
    const int bits = static_cast<int>(Length()) * 8;
    // An unsigned register of 8 bytes can hold more than int64_t; its reachable part ends here.
    return bits == 64 ? std::numeric_limits<int64_t>::max()
           : m_signed ? (int64_t{1} << (bits - 1)) - 1
                      : (int64_t{1} << bits) - 1;
}

int64_t CIntRegNode::Fetch() const
{
    uint8_t bytes[8];
    ReadBytes(bytes);
    const size_t length = static_cast<size_t>(Length());
    uint64_t raw = 0;
    for (size_t i = length; i-- > 0;)
        raw = (raw << 8) | bytes[i];
    const unsigned unusedBits = static_cast<unsigned>(64 - 8 * length);
    if (m_signed && unusedBits > 0)
        return static_cast<int64_t>(raw << unusedBits) >> unusedBits; // arithmetic shift extends the sign
    return static_cast<int64_t>(raw);
}

void CIntRegNode::Store(int64_t value, bool /*verify*/)
{
    uint8_t bytes[8];
    uint64_t raw = static_cast<uint64_t>(value);
    for (size_t i = 0; i < static_cast<size_t>(Length()); ++i, raw >>= 8)
        bytes[i] = static_cast<uint8_t>(raw);
    WriteBytes(bytes);
}

} // namespace GenApi::Detail
