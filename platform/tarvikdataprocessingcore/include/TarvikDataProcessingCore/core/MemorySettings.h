// Settings kept as a tree of named values in memory, and the same tree kept in
// a JSON file. A path's elements are nested object keys.
//
// Thread-safe: every access takes the object's mutex.
#pragma once

#include <TarvikDataProcessingCore/core/ISettings.h>

#include <memory>
#include <mutex>
#include <string>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API MemorySettings : public ISettings
{
public:
    MemorySettings();
    ~MemorySettings() override;

    bool contains(const Utils::SettingsPath& path) const override;
    bool getBool(const Utils::SettingsPath& path) const override;
    int64_t getInt(const Utils::SettingsPath& path) const override;
    double getDouble(const Utils::SettingsPath& path) const override;
    void setBool(const Utils::SettingsPath& path, bool value) override;
    void setInt(const Utils::SettingsPath& path, int64_t value) override;
    void setDouble(const Utils::SettingsPath& path, double value) override;

    // The whole tree as JSON text, and its replacement from such a text; a text
    // that is not a JSON object raises GenICam::InvalidArgumentException and
    // leaves the tree as it was.
    std::string toJson() const;
    void fromJson(const std::string& text);

protected:
    // Called after each change, under the mutex.
    virtual void changed() {}

private:
    struct Tree;
    mutable std::recursive_mutex m_mutex;
    std::unique_ptr<Tree> m_tree;
};

// Reads the file at construction, if it exists, and writes it anew after every change.
class TDPC_API JsonFileSettings : public MemorySettings
{
public:
    explicit JsonFileSettings(std::string fileName);
    ~JsonFileSettings() override;

    const std::string& getFileName() const { return m_fileName; }

protected:
    void changed() override;

private:
    std::string m_fileName;
};

} // namespace Tarvik::DataProcessing::Core
