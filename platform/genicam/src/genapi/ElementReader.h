// Reads the child elements of one node element of a register description and
// keeps track of which it has read, so that the loader can refuse an element
// that no node class knows. Every failure names the node and the element.
#pragma once

#include <GCBase/GCString.h>

#include <pugixml.hpp>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace GenApi::Detail
{

class CNode;

// Receives the nodes that a node element holds inside itself (EnumEntry).
class INestedNodeSink
{
public:
    virtual ~INestedNodeSink() = default;
    virtual CNode* AddNestedNode(pugi::xml_node element, const GenICam::gcstring& nodeName) = 0;
};

class CElementReader
{
public:
    CElementReader(pugi::xml_node element, GenICam::gcstring nodeName, bool suppressStrings,
                   INestedNodeSink& nestedNodes);

    const GenICam::gcstring& NodeName() const { return m_nodeName; }
    bool SuppressStrings() const { return m_suppressStrings; }
    INestedNodeSink& NestedNodes() const { return m_nestedNodes; }

    // The text of the only child `name`; nullopt if there is none, and a
    // failure if there are two.
    std::optional<GenICam::gcstring> Text(const char* name);
    // The texts of every child `name`, in document order.
    std::vector<GenICam::gcstring> Texts(const char* name);
    // The elements `name` themselves, for nodes nested in this one.
    std::vector<pugi::xml_node> Elements(const char* name);

    std::optional<int64_t> Integer(const char* name);
    std::optional<double> Float(const char* name);
    // "true", "false", "1" or "0".
    std::optional<bool> Boolean(const char* name);
    // A node name, checked for its form.
    std::optional<GenICam::gcstring> Reference(const char* name);
    std::vector<GenICam::gcstring> References(const char* name);

    // One word of a closed set, as in <AccessMode>RO</AccessMode>.
    template <class E>
    std::optional<E> Word(const char* name, std::initializer_list<std::pair<const char*, E>> words)
    {
        const std::optional<GenICam::gcstring> text = Text(name);
        if (!text)
            return std::nullopt;
        std::string expected;
        for (const auto& [word, value] : words)
        {
            if (*text == word)
                return value;
            expected += expected.empty() ? word : std::string(", ") + word;
        }
        FailElement(name, *text, ("is none of " + expected).c_str());
    }

    // Refuses the element if it holds a child element that nobody has read.
    void RequireAllRead() const;

    [[noreturn]] void FailElement(const char* name, const GenICam::gcstring& text, const char* problem) const;

private:
    GenICam::gcstring ElementText(pugi::xml_node child) const;
    // The text of the only child `name` read by parse; a failure naming the problem if it cannot.
    template <class T>
    std::optional<T> Parsed(const char* name, std::optional<T> (*parse)(std::string_view),
                            const char* problem);

    pugi::xml_node m_element;
    GenICam::gcstring m_nodeName;
    bool m_suppressStrings;
    INestedNodeSink& m_nestedNodes;
    std::set<std::string> m_read;
};

} // namespace GenApi::Detail
