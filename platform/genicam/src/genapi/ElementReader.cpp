#include "ElementReader.h"

#include "Text.h"

#include <GCBase/GCException.h>

#include <cstring>

namespace GenApi::Detail
{

CElementReader::CElementReader(pugi::xml_node element, GenICam::gcstring nodeName, bool suppressStrings,
                               INestedNodeSink& nestedNodes)
    : m_element(element)
    , m_nodeName(std::move(nodeName))
    , m_suppressStrings(suppressStrings)
    , m_nestedNodes(nestedNodes)
{
    m_read.insert("Extension"); // free content for tools, without meaning here
}

GenICam::gcstring CElementReader::ElementText(pugi::xml_node child) const
{
    GenICam::gcstring text;
    for (pugi::xml_node part : child.children())
    {
        if (part.type() != pugi::node_pcdata && part.type() != pugi::node_cdata)
            throw PROPERTY_EXCEPTION("[%s] element '%s' must hold text only", m_nodeName.c_str(),
                                     child.name());
        text += part.value();
    }
    return text;
}

std::optional<GenICam::gcstring> CElementReader::Text(const char* name)
{
    m_read.insert(name);
    pugi::xml_node child = m_element.child(name);
    if (!child)
        return std::nullopt;
    if (child.next_sibling(name))
        throw PROPERTY_EXCEPTION("[%s] element '%s' appears more than once", m_nodeName.c_str(), name);
    return ElementText(child);
}

std::vector<GenICam::gcstring> CElementReader::Texts(const char* name)
{
    m_read.insert(name);
    std::vector<GenICam::gcstring> texts;
    for (pugi::xml_node child : m_element.children(name))
        texts.push_back(ElementText(child));
    return texts;
}

std::vector<pugi::xml_node> CElementReader::Elements(const char* name)
{
    m_read.insert(name);
    std::vector<pugi::xml_node> elements;
    for (pugi::xml_node child : m_element.children(name))
        elements.push_back(child);
    return elements;
}

template <class T>
std::optional<T> CElementReader::Parsed(const char* name, std::optional<T> (*parse)(std::string_view),
                                        const char* problem)
{
    const std::optional<GenICam::gcstring> text = Text(name);
    if (!text)
        return std::nullopt;
    const std::optional<T> value = parse(text->view());
    if (!value)
        FailElement(name, *text, problem);
    return value;
}

std::optional<int64_t> CElementReader::Integer(const char* name)
{
    return Parsed(name, &ParseInteger, "is not a decimal or 0x-prefixed hexadecimal integer");
}

std::optional<double> CElementReader::Float(const char* name)
{
    return Parsed(name, &ParseFloat, "is not a floating-point number");
}

std::optional<bool> CElementReader::Boolean(const char* name)
{
    return Parsed(name, &ParseBoolean, "is not true or false");
}

std::optional<GenICam::gcstring> CElementReader::Reference(const char* name)
{
    const std::optional<GenICam::gcstring> text = Text(name);
    if (text && !IsNodeName(text->view()))
        FailElement(name, *text, "is not a node name");
    return text;
}

std::vector<GenICam::gcstring> CElementReader::References(const char* name)
{
    std::vector<GenICam::gcstring> texts = Texts(name);
    for (const GenICam::gcstring& text : texts)
        if (!IsNodeName(text.view()))
            FailElement(name, text, "is not a node name");
    return texts;
}

void CElementReader::RequireAllRead() const
{
    for (pugi::xml_node child : m_element.children())
    {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            throw PROPERTY_EXCEPTION("[%s] %s holds text outside its elements", m_nodeName.c_str(),
                                     m_element.name());
        if (child.type() == pugi::node_element && m_read.count(child.name()) == 0)
            throw PROPERTY_EXCEPTION("[%s] element '%s' is not part of a %s in this runtime",
                                     m_nodeName.c_str(), child.name(), m_element.name());
    }
}

void CElementReader::FailElement(const char* name, const GenICam::gcstring& text, const char* problem) const
{
    throw PROPERTY_EXCEPTION("[%s] %s '%s' %s", m_nodeName.c_str(), name, text.c_str(), problem);
}

} // namespace GenApi::Detail
