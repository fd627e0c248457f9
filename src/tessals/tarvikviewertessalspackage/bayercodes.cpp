#include "bayercodes.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace TarvikViewerTessalPackage::Detail
{

namespace
{
constexpr std::array<uint32_t, 28> bayerCodes = {
    0x01080008, 0x01080009, 0x0108000A, 0x0108000B, // 8 bits
    0x0110000C, 0x0110000D, 0x0110000E, 0x0110000F, // 10 bits
    0x01100010, 0x01100011, 0x01100012, 0x01100013, // 12 bits
    0x0110002E, 0x0110002F, 0x01100030, 0x01100031, // 16 bits
    0x010C002A, 0x010C002B, 0x010C002C, 0x010C002D, // 12 bits packed
    0x010A0052, 0x010A0054, 0x010A0056, 0x010A0058, // 10 bits, p
    0x010C0053, 0x010C0055, 0x010C0057, 0x010C0059, // 12 bits, p
};
} // namespace

bool isBayerPixelType(Tarvik::EPixelType type) noexcept
{
    return std::find(bayerCodes.begin(), bayerCodes.end(), static_cast<uint32_t>(type)) != bayerCodes.end();
}

} // namespace TarvikViewerTessalPackage::Detail
