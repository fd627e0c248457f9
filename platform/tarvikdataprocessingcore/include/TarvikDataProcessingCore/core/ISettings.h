// Where the framework saves and loads the parameters of a node.
#pragma once

#include <TarvikDataProcessingCore/utils/SettingsPath.h>

#include <cstdint>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API ISettings
{
public:
    virtual ~ISettings();
    virtual bool contains(const Utils::SettingsPath& path) const = 0;
    // Reads raise GenICam::InvalidArgumentException for a missing path or a value of another type.
    virtual bool getBool(const Utils::SettingsPath& path) const = 0;
    virtual int64_t getInt(const Utils::SettingsPath& path) const = 0;
    virtual double getDouble(const Utils::SettingsPath& path) const = 0;
    virtual void setBool(const Utils::SettingsPath& path, bool value) = 0;
    virtual void setInt(const Utils::SettingsPath& path, int64_t value) = 0;
    virtual void setDouble(const Utils::SettingsPath& path, double value) = 0;
};

} // namespace Tarvik::DataProcessing::Core
