#include "Text.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

namespace GenApi::Detail
{

std::optional<int64_t> ParseInteger(std::string_view text)
{
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
    {
        uint64_t bits = 0;
        const char* first = text.data() + 2;
        const char* last = text.data() + text.size();
        const auto [end, error] = std::from_chars(first, last, bits, 16);
        if (error != std::errc() || end != last)
            return std::nullopt;
        return static_cast<int64_t>(bits);
    }
    if (text.empty() || text[0] == '+')
        return std::nullopt;
    int64_t value = 0;
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value, 10);
    if (error != std::errc() || end != last)
        return std::nullopt;
    return value;
}

std::optional<double> ParseFloat(std::string_view text)
{
    if (text.empty() || std::isspace(static_cast<unsigned char>(text[0])))
        return std::nullopt;
    const std::string copy(text); // strtod needs a terminated text
    char* end = nullptr;
    const double value = std::strtod(copy.c_str(), &end);
    if (end != copy.c_str() + copy.size())
        return std::nullopt;
    return value;
}

std::optional<bool> ParseBoolean(std::string_view text)
{
    if (text == "true" || text == "1")
        return true;
    if (text == "false" || text == "0")
        return false;
    return std::nullopt;
}

bool IsNodeName(std::string_view text)
{
    if (text.empty() || !std::isalpha(static_cast<unsigned char>(text[0])))
        return false;
    for (const char c : text)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_')
            return false;
    return true;
}

GenICam::gcstring FormatInteger(int64_t value)
{
    return GenICam::gcstring(std::to_string(value));
}

GenICam::gcstring FormatHex(int64_t value)
{
    char buffer[24] = "0x";
    const auto [end, error] =
        std::to_chars(buffer + 2, buffer + sizeof buffer, static_cast<uint64_t>(value), 16);
    (void)error; // 16 hexadecimal digits always fit
    for (char* c = buffer + 2; c != end; ++c)
        *c = static_cast<char>(std::toupper(static_cast<unsigned char>(*c)));
    return GenICam::gcstring(buffer, static_cast<size_t>(end - buffer));
}

GenICam::gcstring FormatFloat(double value)
{
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value > 0 ? "INF" : "-INF";
    char buffer[32];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    (void)error; // the shortest form of a double fits in 32 characters
    return GenICam::gcstring(buffer, static_cast<size_t>(end - buffer));
}

} // namespace GenApi::Detail
