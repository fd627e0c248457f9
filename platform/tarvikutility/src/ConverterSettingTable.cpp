#include "ConverterSettingTable.h"

#include <TarvikBase/PixelType.h>

#include <algorithm>

namespace Tarvik::Conversion
{
namespace
{

constexpr EnumEntryDescription kPixelFormats[] = {
    {"Mono8", PixelType_Mono8}, {"Mono16", PixelType_Mono16}, {"RGB8", PixelType_RGB8},
    {"RGB16", PixelType_RGB16}, {"BGRa8", PixelType_BGRa8},
};

constexpr EnumEntryDescription kOrientations[] = {
    {"TopDown", ImageOrientation_TopDown},
    {"BottomUp", ImageOrientation_BottomUp},
};

constexpr EnumEntryDescription kBitAlignments[] = {
    {"LsbAligned", OutputBitAlignment_LsbAligned},
    {"MsbAligned", OutputBitAlignment_MsbAligned},
};

constexpr EnumEntryDescription kEdgeHandlings[] = {
    {"SetZero", InconvertibleEdgeHandling_SetZero},
    {"Extrapolate", InconvertibleEdgeHandling_Extrapolate},
};

constexpr SettingDescription kSettings[kSettingCount] = {
    {EConverterSetting::OutputPixelFormat, "OutputPixelFormat", "Pixel format of the converted image.",
     PixelType_Mono8, PixelType_RGB16, PixelType_BGRa8, kPixelFormats},
    {EConverterSetting::OutputPaddingX,
     "OutputPaddingX",
     "Bytes after each row of the converted image.",
     0,
     65535,
     0,
     {}},
    {EConverterSetting::OutputOrientation, "OutputOrientation", "Row order of the converted image.",
     ImageOrientation_TopDown, ImageOrientation_BottomUp, ImageOrientation_TopDown, kOrientations},
    {EConverterSetting::OutputBitAlignment, "OutputBitAlignment",
     "Where samples of a smaller depth go in a wider output sample.", OutputBitAlignment_LsbAligned,
     OutputBitAlignment_MsbAligned, OutputBitAlignment_LsbAligned, kBitAlignments},
    {EConverterSetting::InconvertibleEdgeHandling, "InconvertibleEdgeHandling",
     "What becomes of the border pixels of a Bayer image.", InconvertibleEdgeHandling_SetZero,
     InconvertibleEdgeHandling_Extrapolate, InconvertibleEdgeHandling_SetZero, kEdgeHandlings},
    {EConverterSetting::MaxNumThreads, "MaxNumThreads", "Threads one conversion may use.", 1, 64, 1, {}},
};

} // namespace

std::span<const SettingDescription> SettingTable()
{
    return kSettings;
}

const SettingDescription& DescribeSetting(EConverterSetting setting)
{
    return kSettings[static_cast<size_t>(setting)];
}

bool IsAllowedValue(const SettingDescription& description, int64_t value)
{
    if (value < description.minimum || value > description.maximum)
    {
        return false;
    }
    return description.entries.empty() ||
           std::any_of(description.entries.begin(), description.entries.end(),
                       [value](const EnumEntryDescription& entry) { return entry.value == value; });
}

} // namespace Tarvik::Conversion
