#include "SourceFormat.h"

#include <string_view>

namespace Tarvik::Conversion
{
namespace
{

BayerPhase PhaseFromName(std::string_view name)
{
    if (name.starts_with("BayerRG"))
        return BayerPhase::RG;
    if (name.starts_with("BayerGB"))
        return BayerPhase::GB;
    if (name.starts_with("BayerGR"))
        return BayerPhase::GR;
    return BayerPhase::BG;
}

YuvLayout YuvLayoutOf(EPixelType type)
{
    switch (type)
    {
    case PixelType_YUV422_8_UYVY:
        return YuvLayout::Uyvy422;
    case PixelType_YUV422_8:
        return YuvLayout::Yuyv422;
    case PixelType_YUV411_8_UYYVYY:
        return YuvLayout::Uyyvyy411;
    case PixelType_YUV8_UYV:
        return YuvLayout::Uyv444;
    default:
        return YuvLayout::None;
    }
}

uint32_t StoredChannels(const PixelTypeInfo& info)
{
    if (info.family == PixelFamily::Mono || info.family == PixelFamily::Bayer)
    {
        return 1;
    }
    if (info.family == PixelFamily::Color && info.packing == PixelPacking::Unpacked)
    {
        return info.bitsPerPixel / (info.bitDepth <= 8 ? 8 : 16);
    }
    return 3;
}

} // namespace

std::optional<SourceFormat> DescribeSource(EPixelType type)
{
    const PixelTypeInfo* info = FindPixelTypeInfo(type);
    if (info == nullptr)
    {
        return std::nullopt;
    }
    const std::string_view name = info->name;
    return SourceFormat{info->type,
                        info->family,
                        info->packing,
                        info->bitDepth,
                        info->bitsPerPixel,
                        StoredChannels(*info),
                        name.starts_with("BGR"),
                        info->family == PixelFamily::Bayer ? PhaseFromName(name) : BayerPhase::RG,
                        YuvLayoutOf(info->type)};
}

BayerRowKind BayerRowKindOf(BayerPhase phase, uint32_t row)
{
    const bool odd = (row & 1u) != 0;
    switch (phase)
    {
    case BayerPhase::RG:
        return odd ? BayerRowKind{false, 1} : BayerRowKind{true, 0};
    case BayerPhase::GB:
        return odd ? BayerRowKind{true, 0} : BayerRowKind{false, 1};
    case BayerPhase::GR:
        return odd ? BayerRowKind{false, 0} : BayerRowKind{true, 1};
    case BayerPhase::BG:
        return odd ? BayerRowKind{true, 1} : BayerRowKind{false, 0};
    }
    return {true, 0};
}

} // namespace Tarvik::Conversion
