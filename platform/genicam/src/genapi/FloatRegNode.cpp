#include "FloatRegNode.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace GenApi::Detail
{

void CFloatRegNode::Load(CElementReader& reader)
{
    CRegisterNode::Load(reader);
    LoadDisplay(reader);
}

double CFloatRegNode::Min() const
{
    return Length() == 4 ? -std::numeric_limits<float>::max() : std::numeric_limits<double>::lowest();
}

double CFloatRegNode::Max() const
{
    return Length() == 4 ? std::numeric_limits<float>::max() : std::numeric_limits<double>::max();
}

// The bytes least significant first are the host's float layout on the
// little-endian machines this runtime serves.
double CFloatRegNode::Fetch() const
{
    uint8_t bytes[8];
    ReadBytes(bytes);
    if (Length() == 4)
    {
        float single = 0.0f;
        std::memcpy(&single, bytes, sizeof single);
        return single;
    }
    double value = 0.0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

void CFloatRegNode::Store(double value, bool /*verify*/)
{
    uint8_t bytes[8];
    if (Length() == 4)
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
    WriteBytes(bytes);
}

} // namespace GenApi::Detail
