#include <TarvikBase/PixelTypeInfo.h>

#include <algorithm>
#include <array>

namespace Tarvik
{
namespace
{

using enum PixelFamily;
using enum PixelPacking;

constexpr PixelTypeInfo kTable[] = {
    {PixelType_Mono1p, "Mono1p", 1, 1, Mono, LsbStream},
    {PixelType_Mono2p, "Mono2p", 2, 2, Mono, LsbStream},
    {PixelType_Mono4p, "Mono4p", 4, 4, Mono, LsbStream},
    {PixelType_Mono8, "Mono8", 8, 8, Mono, Unpacked},
    {PixelType_Mono10, "Mono10", 16, 10, Mono, Unpacked},
    {PixelType_Mono10Packed, "Mono10Packed", 12, 10, Mono, GroupedMsb},
    {PixelType_Mono12, "Mono12", 16, 12, Mono, Unpacked},
    {PixelType_Mono12Packed, "Mono12Packed", 12, 12, Mono, GroupedMsb},
    {PixelType_Mono14, "Mono14", 16, 14, Mono, Unpacked},
    {PixelType_Mono16, "Mono16", 16, 16, Mono, Unpacked},
    {PixelType_Mono10p, "Mono10p", 10, 10, Mono, LsbStream},
    {PixelType_Mono12p, "Mono12p", 12, 12, Mono, LsbStream},

    {PixelType_BayerGR8, "BayerGR8", 8, 8, Bayer, Unpacked},
    {PixelType_BayerRG8, "BayerRG8", 8, 8, Bayer, Unpacked},
    {PixelType_BayerGB8, "BayerGB8", 8, 8, Bayer, Unpacked},
    {PixelType_BayerBG8, "BayerBG8", 8, 8, Bayer, Unpacked},
    {PixelType_BayerGR10, "BayerGR10", 16, 10, Bayer, Unpacked},
    {PixelType_BayerRG10, "BayerRG10", 16, 10, Bayer, Unpacked},
    {PixelType_BayerGB10, "BayerGB10", 16, 10, Bayer, Unpacked},
    {PixelType_BayerBG10, "BayerBG10", 16, 10, Bayer, Unpacked},
    {PixelType_BayerGR12, "BayerGR12", 16, 12, Bayer, Unpacked},
    {PixelType_BayerRG12, "BayerRG12", 16, 12, Bayer, Unpacked},
    {PixelType_BayerGB12, "BayerGB12", 16, 12, Bayer, Unpacked},
    {PixelType_BayerBG12, "BayerBG12", 16, 12, Bayer, Unpacked},
    {PixelType_BayerGR12Packed, "BayerGR12Packed", 12, 12, Bayer, GroupedMsb},
    {PixelType_BayerRG12Packed, "BayerRG12Packed", 12, 12, Bayer, GroupedMsb},
    {PixelType_BayerGB12Packed, "BayerGB12Packed", 12, 12, Bayer, GroupedMsb},
    {PixelType_BayerBG12Packed, "BayerBG12Packed", 12, 12, Bayer, GroupedMsb},
    {PixelType_BayerGR16, "BayerGR16", 16, 16, Bayer, Unpacked},
    {PixelType_BayerRG16, "BayerRG16", 16, 16, Bayer, Unpacked},
    {PixelType_BayerGB16, "BayerGB16", 16, 16, Bayer, Unpacked},
    {PixelType_BayerBG16, "BayerBG16", 16, 16, Bayer, Unpacked},
    {PixelType_BayerBG10p, "BayerBG10p", 10, 10, Bayer, LsbStream},
    {PixelType_BayerGB10p, "BayerGB10p", 10, 10, Bayer, LsbStream},
    {PixelType_BayerGR10p, "BayerGR10p", 10, 10, Bayer, LsbStream},
    {PixelType_BayerRG10p, "BayerRG10p", 10, 10, Bayer, LsbStream},
    {PixelType_BayerBG12p, "BayerBG12p", 12, 12, Bayer, LsbStream},
    {PixelType_BayerGB12p, "BayerGB12p", 12, 12, Bayer, LsbStream},
    {PixelType_BayerGR12p, "BayerGR12p", 12, 12, Bayer, LsbStream},
    {PixelType_BayerRG12p, "BayerRG12p", 12, 12, Bayer, LsbStream},

    {PixelType_RGB8, "RGB8", 24, 8, Color, Unpacked},
    {PixelType_BGR8, "BGR8", 24, 8, Color, Unpacked},
    {PixelType_RGBa8, "RGBa8", 32, 8, Color, Unpacked},
    {PixelType_BGRa8, "BGRa8", 32, 8, Color, Unpacked},
    {PixelType_RGB10, "RGB10", 48, 10, Color, Unpacked},
    {PixelType_BGR10, "BGR10", 48, 10, Color, Unpacked},
    {PixelType_RGB12, "RGB12", 48, 12, Color, Unpacked},
    {PixelType_BGR12, "BGR12", 48, 12, Color, Unpacked},
    {PixelType_RGB16, "RGB16", 48, 16, Color, Unpacked},
    {PixelType_BGR16, "BGR16", 48, 16, Color, Unpacked},
    {PixelType_RGB10p32, "RGB10p32", 32, 10, Color, Packed10In32},
    {PixelType_RGB565p, "RGB565p", 16, 6, Color, Packed565},
    {PixelType_BGR565p, "BGR565p", 16, 6, Color, Packed565},
    {PixelType_BGR10p, "BGR10p", 30, 10, Color, LsbStream},
    {PixelType_BGR12p, "BGR12p", 36, 12, Color, LsbStream},
    {PixelType_RGB10p, "RGB10p", 30, 10, Color, LsbStream},
    {PixelType_RGB12p, "RGB12p", 36, 12, Color, LsbStream},
    {PixelType_RGB8_Planar, "RGB8_Planar", 24, 8, Color, Planar},
    {PixelType_RGB10_Planar, "RGB10_Planar", 48, 10, Color, Planar},
    {PixelType_RGB12_Planar, "RGB12_Planar", 48, 12, Color, Planar},
    {PixelType_RGB16_Planar, "RGB16_Planar", 48, 16, Color, Planar},

    {PixelType_YUV411_8_UYYVYY, "YUV411_8_UYYVYY", 12, 8, YUV, Unpacked},
    {PixelType_YUV422_8_UYVY, "YUV422_8_UYVY", 16, 8, YUV, Unpacked},
    {PixelType_YUV8_UYV, "YUV8_UYV", 24, 8, YUV, Unpacked},
    {PixelType_YUV422_8, "YUV422_8", 16, 8, YUV, Unpacked},
};

// The same entries sorted by code, for the look-up.
constexpr auto kByCode = []
{
    std::array<PixelTypeInfo, std::size(kTable)> sorted{};
    std::copy(std::begin(kTable), std::end(kTable), sorted.begin());
    std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.type < b.type; });
    return sorted;
}();

} // namespace

std::span<const PixelTypeInfo> PixelTypeTable()
{
    return kTable;
}

const PixelTypeInfo* FindPixelTypeInfo(EPixelType type)
{
    const auto it =
        std::lower_bound(kByCode.begin(), kByCode.end(), type,
                         [](const PixelTypeInfo& entry, EPixelType code) { return entry.type < code; });
    return it != kByCode.end() && it->type == type ? &*it : nullptr;
}

} // namespace Tarvik
