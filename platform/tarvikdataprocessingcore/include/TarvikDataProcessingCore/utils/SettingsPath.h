// The address of one setting: a sequence of names, outermost first.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <GCBase/GCString.h>

#include <initializer_list>
#include <vector>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API SettingsPath
{
public:
    SettingsPath() = default;
    SettingsPath(const GenICam::gcstring& element)
        : m_elements{element}
    {
    }
    SettingsPath(const char* element)
        : m_elements{GenICam::gcstring(element)}
    {
    }
    SettingsPath(std::initializer_list<GenICam::gcstring> elements)
        : m_elements(elements)
    {
    }

    const std::vector<GenICam::gcstring>& getElements() const { return m_elements; }
    // The elements joined by '/'.
    GenICam::gcstring toString() const;

    friend bool operator==(const SettingsPath&, const SettingsPath&) = default;

private:
    std::vector<GenICam::gcstring> m_elements;
};

} // namespace Tarvik::DataProcessing::Utils
