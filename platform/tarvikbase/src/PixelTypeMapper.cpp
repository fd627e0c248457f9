#include <TarvikBase/PixelTypeInfo.h>
#include <TarvikBase/PixelTypeMapper.h>

#include <string_view>

namespace Tarvik
{
namespace
{

struct NameAlias
{
    std::string_view name;
    EPixelType type;
};

// Older names that cameras and files still use for codes of the table.
constexpr NameAlias kAliases[] = {
    {"Mono1packed", PixelType_Mono1p},
    {"Mono2packed", PixelType_Mono2p},
    {"Mono4packed", PixelType_Mono4p},
    {"RGB8Packed", PixelType_RGB8},
    {"BGR8Packed", PixelType_BGR8},
    {"RGBA8Packed", PixelType_RGBa8},
    {"BGRA8Packed", PixelType_BGRa8},
    {"RGB10Packed", PixelType_RGB10},
    {"BGR10Packed", PixelType_BGR10},
    {"RGB12Packed", PixelType_RGB12},
    {"BGR12Packed", PixelType_BGR12},
    {"RGB16Packed", PixelType_RGB16},
    {"RGB8Planar", PixelType_RGB8_Planar},
    {"RGB10Planar", PixelType_RGB10_Planar},
    {"RGB12Planar", PixelType_RGB12_Planar},
    {"RGB16Planar", PixelType_RGB16_Planar},
    {"YUV411Packed", PixelType_YUV411_8_UYYVYY},
    {"YUV422Packed", PixelType_YUV422_8_UYVY},
    {"YUV422_YUYV_Packed", PixelType_YUV422_8},
    {"YUV444Packed", PixelType_YUV8_UYV},
};

constexpr std::string_view kUndefinedName = "Undefined";

} // namespace

EPixelType CPixelTypeMapper::GetTarvikPixelTypeByName(const GenICam::gcstring& name)
{
    const std::string_view wanted = name.view();
    for (const PixelTypeInfo& info : PixelTypeTable())
    {
        if (wanted == info.name)
        {
            return info.type;
        }
    }
    for (const NameAlias& alias : kAliases)
    {
        if (wanted == alias.name)
        {
            return alias.type;
        }
    }
    return PixelType_Undefined;
}

GenICam::gcstring CPixelTypeMapper::GetNameByTarvikPixelType(EPixelType type)
{
    if (type == PixelType_Undefined)
    {
        return GenICam::gcstring(kUndefinedName);
    }
    const PixelTypeInfo* info = FindPixelTypeInfo(type);
    return info ? GenICam::gcstring(info->name) : GenICam::gcstring();
}

} // namespace Tarvik
