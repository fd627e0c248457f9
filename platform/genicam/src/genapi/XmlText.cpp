#include "XmlText.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace GenApi::Detail
{

namespace
{

bool IsXmlCharacter(uint32_t c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

std::string Format(const char* format, uint32_t value, size_t line)
{
    char text[128];
    std::snprintf(text, sizeof text, format, static_cast<unsigned>(value), line);
    return text;
}

void AppendUtf8(std::string& out, uint32_t c)
{
    if (c < 0x80)
        out += static_cast<char>(c);
    else if (c < 0x800)
    {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
    else if (c < 0x10000)
    {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
    else
    {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Resolves the references of raw into out; an empty text or the problem.
std::string Decode(const char* raw, std::string& out)
{
    out.clear();
    for (const char* p = raw; *p != '\0'; ++p)
    {
        if (*p != '&')
        {
            out += *p;
            continue;
        }
        const char* end = std::strchr(p, ';');
        if (end == nullptr || end - p > 12)
            return "an '&' that starts no reference";
        const std::string name(p + 1, end);
        if (name == "lt")
            out += '<';
        else if (name == "gt")
            out += '>';
        else if (name == "amp")
            out += '&';
        else if (name == "apos")
            out += '\'';
        else if (name == "quot")
            out += '"';
        else if (name.size() > 1 && name[0] == '#')
        {
            const bool hex = name[1] == 'x';
            const std::string digits = name.substr(hex ? 2 : 1);
            if (digits.empty() || digits.size() > 8 ||
                digits.find_first_not_of(hex ? "0123456789abcdefABCDEF" : "0123456789") != std::string::npos)
                return "the character reference '&" + name + ";'";
            const uint32_t c = static_cast<uint32_t>(std::strtoul(digits.c_str(), nullptr, hex ? 16 : 10));
            if (!IsXmlCharacter(c))
                return "the character reference '&" + name + ";' to a character that XML does not allow";
            AppendUtf8(out, c);
        }
        else
            return "the reference '&" + name + ";' to an entity that is not defined";
        p = end;
    }
    return std::string();
}

bool IsNameStart(unsigned char c)
{
    return std::isalpha(c) || c == '_' || c == ':' || c >= 0x80;
}

bool IsXmlName(const char* name)
{
    if (!IsNameStart(static_cast<unsigned char>(*name)))
        return false;
    for (const char* p = name + 1; *p != '\0'; ++p)
    {
        const unsigned char c = static_cast<unsigned char>(*p);
        if (!IsNameStart(c) && !std::isdigit(c) && c != '-' && c != '.')
            return false;
    }
    return true;
}

std::string CheckElement(pugi::xml_node element, std::string& decoded)
{
    if (!IsXmlName(element.name()))
        return "the element name '" + std::string(element.name()) + "'";
    for (pugi::xml_attribute attribute : element.attributes())
    {
        if (!IsXmlName(attribute.name()))
            return "the attribute name '" + std::string(attribute.name()) + "' of element '" +
                   element.name() + "'";
        for (pugi::xml_attribute other = attribute.next_attribute(); other; other = other.next_attribute())
            if (std::strcmp(attribute.name(), other.name()) == 0)
                return "the repeated attribute '" + std::string(attribute.name()) + "' of element '" +
                       element.name() + "'";
        if (std::strchr(attribute.value(), '<') != nullptr)
            return "a '<' in attribute '" + std::string(attribute.name()) + "' of element '" +
                   element.name() + "'";
        const std::string problem = Decode(attribute.value(), decoded);
        if (!problem.empty())
            return problem + " in attribute '" + attribute.name() + "' of element '" + element.name() + "'";
        attribute.set_value(decoded.c_str());
    }
    return std::string();
}

} // namespace

std::string CheckCharacters(const char* text, size_t length)
{
    size_t line = 1;
    for (size_t i = 0; i < length;)
    {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        size_t size = 1;
        uint32_t c = lead;
        if (lead >= 0x80)
        {
            if (lead >= 0xC2 && lead <= 0xDF)
                size = 2, c = lead & 0x1F;
            else if (lead >= 0xE0 && lead <= 0xEF)
                size = 3, c = lead & 0x0F;
            else if (lead >= 0xF0 && lead <= 0xF4)
                size = 4, c = lead & 0x07;
            else
                return Format("byte 0x%02X at line %zu is not UTF-8", lead, line);
            if (i + size > length)
                return Format("byte 0x%02X at line %zu starts a UTF-8 sequence that the text cuts off", lead,
                              line);
            for (size_t k = 1; k < size; ++k)
            {
                const unsigned char next = static_cast<unsigned char>(text[i + k]);
                if ((next & 0xC0) != 0x80)
                    return Format("byte 0x%02X at line %zu starts an invalid UTF-8 sequence", lead, line);
                c = (c << 6) | (next & 0x3F);
            }
            // Overlong forms and surrogates are no characters.
            const uint32_t smallest = size == 2 ? 0x80 : size == 3 ? 0x800 : 0x10000;
            if (c < smallest || (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF)
                return Format("byte 0x%02X at line %zu starts an invalid UTF-8 sequence", lead, line);
        }
        if (!IsXmlCharacter(c))
            return Format("character U+%04X at line %zu is not allowed in XML", c, line);
        if (c == '\n')
            ++line;
        i += size;
    }
    return std::string();
}

std::string DecodeTree(pugi::xml_node node)
{
    std::string decoded;
    std::vector<pugi::xml_node> pending{node};
    while (!pending.empty())
    {
        const pugi::xml_node current = pending.back();
        pending.pop_back();
        if (current.type() == pugi::node_element)
        {
            const std::string problem = CheckElement(current, decoded);
            if (!problem.empty())
                return problem;
        }
        else if (current.type() == pugi::node_pcdata)
        {
            const std::string problem = Decode(current.value(), decoded);
            if (!problem.empty())
                return problem + " in the text of element '" + current.parent().name() + "'";
            pugi::xml_node(current).set_value(decoded.c_str());
        }
        for (pugi::xml_node child : current.children())
            pending.push_back(child);
    }
    return std::string();
}

} // namespace GenApi::Detail
