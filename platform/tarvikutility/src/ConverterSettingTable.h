// The one description of the converter's settings: names, ranges, allowed values
// and defaults. Validation of the typed members, the settings registers and the
// node map's register description are all derived from it.
#pragma once

#include <TarvikUtility/ConverterParameter.h>
#include <TarvikUtility/ImageFormatConverterSettings.h>

#include <cstdint>
#include <span>

namespace Tarvik::Conversion
{

struct EnumEntryDescription
{
    const char* name;
    int64_t value;
};

struct SettingDescription
{
    EConverterSetting setting;
    const char* name;
    const char* toolTip;
    int64_t minimum;
    int64_t maximum;
    int64_t defaultValue;
    // Empty for an integer setting; the list of allowed values for an enumeration.
    std::span<const EnumEntryDescription> entries;
};

inline constexpr size_t kSettingCount = 6;

std::span<const SettingDescription> SettingTable();
const SettingDescription& DescribeSetting(EConverterSetting setting);

// True when `value` lies in the setting's range and, for an enumeration, is one of its entries.
bool IsAllowedValue(const SettingDescription& description, int64_t value);

} // namespace Tarvik::Conversion
