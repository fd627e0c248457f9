#include "ConverterSettingsStore.h"

#include <GCBase/GCException.h>

#include <cstring>

namespace Tarvik::Conversion
{

ConverterSettingsStore::ConverterSettingsStore()
{
    for (const SettingDescription& description : SettingTable())
    {
        m_values[static_cast<size_t>(description.setting)] = description.defaultValue;
    }
}

int64_t ConverterSettingsStore::Get(EConverterSetting setting) const
{
    std::lock_guard lock(m_mutex);
    return m_values[static_cast<size_t>(setting)];
}

void ConverterSettingsStore::Set(EConverterSetting setting, int64_t value)
{
    const SettingDescription& description = DescribeSetting(setting);
    if (!IsAllowedValue(description, value))
    {
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %lld is not allowed (range %lld to %lld%s)",
                                     description.name, static_cast<long long>(value),
                                     static_cast<long long>(description.minimum),
                                     static_cast<long long>(description.maximum),
                                     description.entries.empty() ? "" : ", listed values only");
    }
    std::lock_guard lock(m_mutex);
    m_values[static_cast<size_t>(setting)] = value;
}

ImageFormatConverterSettings ConverterSettingsStore::Snapshot() const
{
    std::lock_guard lock(m_mutex);
    const auto value = [this](EConverterSetting setting) { return m_values[static_cast<size_t>(setting)]; };
    ImageFormatConverterSettings settings;
    settings.outputPixelFormat = static_cast<EPixelType>(value(EConverterSetting::OutputPixelFormat));
    settings.outputPaddingX = static_cast<uint32_t>(value(EConverterSetting::OutputPaddingX));
    settings.outputOrientation = static_cast<EImageOrientation>(value(EConverterSetting::OutputOrientation));
    settings.outputBitAlignment =
        static_cast<EOutputBitAlignment>(value(EConverterSetting::OutputBitAlignment));
    settings.inconvertibleEdgeHandling =
        static_cast<EInconvertibleEdgeHandling>(value(EConverterSetting::InconvertibleEdgeHandling));
    settings.maxNumThreads = static_cast<uint32_t>(value(EConverterSetting::MaxNumThreads));
    return settings;
}

void ConverterSettingsStore::ReadRegisters(void* buffer, int64_t address, int64_t length) const
{
    auto* bytes = static_cast<uint8_t*>(buffer);
    std::lock_guard lock(m_mutex);
    for (int64_t i = 0; i < length; ++i)
    {
        const int64_t at = address + i;
        uint8_t byte = 0;
        if (at >= 0 && at < kRegisterSpan)
        {
            const auto value = static_cast<uint64_t>(m_values[static_cast<size_t>(at / kRegisterLength)]);
            byte = static_cast<uint8_t>(value >> (8 * (at % kRegisterLength)));
        }
        bytes[i] = byte;
    }
}

void ConverterSettingsStore::WriteRegisters(const void* buffer, int64_t address, int64_t length)
{
    if (address < 0 || length != kRegisterLength || address % kRegisterLength != 0 ||
        address >= kRegisterSpan)
    {
        return;
    }
    uint64_t raw = 0;
    const auto* bytes = static_cast<const uint8_t*>(buffer);
    for (int64_t i = 0; i < kRegisterLength; ++i)
    {
        raw |= uint64_t{bytes[i]} << (8 * i);
    }
    const auto index = static_cast<size_t>(address / kRegisterLength);
    const int64_t value = static_cast<int64_t>(raw);
    if (!IsAllowedValue(SettingTable()[index], value))
    {
        return;
    }
    std::lock_guard lock(m_mutex);
    m_values[index] = value;
}

} // namespace Tarvik::Conversion
