// The settings registers of one converter: the single place where its settings
// live. Typed members, the node map's port and every conversion go through it.
// Thread-safe: one mutex guards the values.
#pragma once

#include "ConverterSettingTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace Tarvik::Conversion
{

class ConverterSettingsStore
{
public:
    // Each setting is one 64-bit little-endian register at 8 times its index.
    static constexpr int64_t kRegisterLength = 8;
    static constexpr int64_t kRegisterSpan = kRegisterLength * static_cast<int64_t>(kSettingCount);

    ConverterSettingsStore();

    int64_t Get(EConverterSetting setting) const;
    // Raises OutOfRangeException, naming the setting, for a value it does not allow.
    void Set(EConverterSetting setting, int64_t value);

    ImageFormatConverterSettings Snapshot() const;

    // Register access for the node map's port. Bytes outside the registers read
    // as zeros; a write that does not cover one whole register, or that holds a
    // value the setting does not allow, is dropped.
    void ReadRegisters(void* buffer, int64_t address, int64_t length) const;
    void WriteRegisters(const void* buffer, int64_t address, int64_t length);

private:
    mutable std::mutex m_mutex;
    std::array<int64_t, kSettingCount> m_values;
};

} // namespace Tarvik::Conversion
