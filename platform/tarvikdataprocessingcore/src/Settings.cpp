#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <GCBase/GCException.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace Tarvik::DataProcessing
{

GenICam::gcstring Utils::SettingsPath::toString() const
{
    GenICam::gcstring text;
    for (size_t i = 0; i < m_elements.size(); ++i)
    {
        if (i)
            text += '/';
        text += m_elements[i];
    }
    return text;
}

namespace Core
{

ISettings::~ISettings() = default;

struct MemorySettings::Tree
{
    nlohmann::json root = nlohmann::json::object();

    const nlohmann::json* find(const Utils::SettingsPath& path) const
    {
        const nlohmann::json* node = &root;
        for (const GenICam::gcstring& element : path.getElements())
        {
            if (!node->is_object())
                return nullptr;
            const auto it = node->find(element.str());
            if (it == node->end())
                return nullptr;
            node = &*it;
        }
        return path.getElements().empty() ? nullptr : node;
    }

    const nlohmann::json& at(const Utils::SettingsPath& path) const
    {
        const nlohmann::json* const node = find(path);
        if (!node)
            throw INVALID_ARGUMENT_EXCEPTION("No setting '%s'.", path.toString().c_str());
        return *node;
    }

    nlohmann::json& slot(const Utils::SettingsPath& path)
    {
        if (path.getElements().empty())
            throw INVALID_ARGUMENT_EXCEPTION("A settings path needs at least one element.");
        nlohmann::json* node = &root;
        for (const GenICam::gcstring& element : path.getElements())
        {
            if (!node->is_object())
                *node = nlohmann::json::object();
            node = &(*node)[element.str()];
        }
        return *node;
    }
};

namespace
{
[[noreturn]] void wrongType(const Utils::SettingsPath& path, const char* expected)
{
    throw INVALID_ARGUMENT_EXCEPTION("Setting '%s' is not %s.", path.toString().c_str(), expected);
}
} // namespace

MemorySettings::MemorySettings()
    : m_tree(std::make_unique<Tree>())
{
}
MemorySettings::~MemorySettings() = default;

bool MemorySettings::contains(const Utils::SettingsPath& path) const
{
    std::lock_guard guard(m_mutex);
    return m_tree->find(path) != nullptr;
}

bool MemorySettings::getBool(const Utils::SettingsPath& path) const
{
    std::lock_guard guard(m_mutex);
    const nlohmann::json& value = m_tree->at(path);
    if (!value.is_boolean())
        wrongType(path, "a boolean");
    return value.get<bool>();
}

int64_t MemorySettings::getInt(const Utils::SettingsPath& path) const
{
    std::lock_guard guard(m_mutex);
    const nlohmann::json& value = m_tree->at(path);
    if (!value.is_number_integer())
        wrongType(path, "an integer");
    return value.get<int64_t>();
}

double MemorySettings::getDouble(const Utils::SettingsPath& path) const
{
    std::lock_guard guard(m_mutex);
    const nlohmann::json& value = m_tree->at(path);
    if (!value.is_number())
        wrongType(path, "a number");
    return value.get<double>();
}

void MemorySettings::setBool(const Utils::SettingsPath& path, bool value)
{
    std::lock_guard guard(m_mutex);
    m_tree->slot(path) = value;
    changed();
}

void MemorySettings::setInt(const Utils::SettingsPath& path, int64_t value)
{
    std::lock_guard guard(m_mutex);
    m_tree->slot(path) = value;
    changed();
}

void MemorySettings::setDouble(const Utils::SettingsPath& path, double value)
{
    std::lock_guard guard(m_mutex);
    m_tree->slot(path) = value;
    changed();
}

std::string MemorySettings::toJson() const
{
    std::lock_guard guard(m_mutex);
    return m_tree->root.dump(4);
}

void MemorySettings::fromJson(const std::string& text)
{
    nlohmann::json parsed = nlohmann::json::parse(text, nullptr, false);
    if (parsed.is_discarded() || !parsed.is_object())
        throw INVALID_ARGUMENT_EXCEPTION("Settings text is not a JSON object.");
    std::lock_guard guard(m_mutex);
    m_tree->root = std::move(parsed);
}

JsonFileSettings::JsonFileSettings(std::string fileName)
    : m_fileName(std::move(fileName))
{
    std::ifstream file(m_fileName);
    if (!file)
        return;
    std::stringstream text;
    text << file.rdbuf();
    fromJson(text.str());
}

JsonFileSettings::~JsonFileSettings() = default;

void JsonFileSettings::changed()
{
    // Write beside the file and rename, so that a crash never leaves half a file.
    const std::string temporary = m_fileName + ".tmp";
    {
        std::ofstream file(temporary, std::ios::trunc);
        file << toJson() << '\n';
        if (!file)
            throw RUNTIME_EXCEPTION("Cannot write settings file '%s'.", temporary.c_str());
    }
    std::error_code error;
    std::filesystem::rename(temporary, m_fileName, error);
    if (error)
        throw RUNTIME_EXCEPTION("Cannot replace settings file '%s': %s", m_fileName.c_str(),
                                error.message().c_str());
}

} // namespace Core
} // namespace Tarvik::DataProcessing
