// The port between the converter's node map and its settings registers.
#pragma once

#include "ConverterSettingsStore.h"

#include <GenApi/PortImpl.h>

namespace Tarvik::Conversion
{

class ConverterPort final : public GenApi::CPortImpl
{
public:
    explicit ConverterPort(ConverterSettingsStore& settings)
        : m_settings(settings)
    {
    }

    GenApi::EAccessMode GetAccessMode() const override { return GenApi::RW; }
    void Read(void* buffer, int64_t address, int64_t length) override
    {
        m_settings.ReadRegisters(buffer, address, length);
    }
    void Write(const void* buffer, int64_t address, int64_t length) override
    {
        m_settings.WriteRegisters(buffer, address, length);
    }

private:
    ConverterSettingsStore& m_settings;
};

} // namespace Tarvik::Conversion
