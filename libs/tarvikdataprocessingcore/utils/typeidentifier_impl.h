// Identifier text of a type, derived at compile time from the compiler's
// signature text of a function template instance.
//
// The framework names a type as "class N::Type", template arguments spelled the
// same way with no blank after a comma, and one blank between two closing angle
// brackets: "class N::COWPtr<class N::Array<class N::IInteger,void> >". GCC and
// clang write "N::COWPtr<N::Array<N::IInteger, void> >" or "...void>>" instead;
// this converter turns either into the framework's form. Every name that is not
// a fundamental type keyword is taken to be a class.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace Tarvik::DataProcessing::Utils::Detail
{

template <typename T>
constexpr std::string_view compilerSignature()
{
    return __PRETTY_FUNCTION__;
}

// The type as the compiler spells it: what follows "T = " in the signature, up
// to the closing bracket (or the ';' that starts a further template parameter).
constexpr std::string_view compilerTypeName(std::string_view signature)
{
    const size_t start = signature.find("T = ") + 4;
    size_t end = signature.find(';', start);
    if (end == std::string_view::npos)
        end = signature.rfind(']');
    return signature.substr(start, end - start);
}

constexpr bool isNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == ':';
}

constexpr bool isFundamentalKeyword(std::string_view word)
{
    constexpr std::string_view keywords[] = {"void",     "bool",     "char",     "signed",   "unsigned",
                                             "short",    "int",      "long",     "float",    "double",
                                             "wchar_t",  "char8_t",  "char16_t", "char32_t", "const",
                                             "volatile", "__int128", "decltype", "nullptr_t"};
    for (std::string_view keyword : keywords)
        if (word == keyword)
            return true;
    return word.empty() || (word[0] >= '0' && word[0] <= '9') || word[0] == '-';
}

// Writes the framework's form of `compilerName` to `out` (if not null) and
// returns its length.
constexpr size_t toFrameworkIdentifier(std::string_view compilerName, char* out)
{
    size_t length = 0;
    auto put = [&](std::string_view text)
    {
        for (char c : text)
        {
            if (out)
                out[length] = c;
            ++length;
        }
    };
    char last = '\0';
    for (size_t i = 0; i < compilerName.size();)
    {
        const char c = compilerName[i];
        if (isNameCharacter(c) || c == '-')
        {
            size_t end = i + 1;
            while (end < compilerName.size() && isNameCharacter(compilerName[end]))
                ++end;
            const std::string_view word = compilerName.substr(i, end - i);
            if (last != '\0' && last != '<' && last != ',' && last != ' ')
                put(" ");
            if (!isFundamentalKeyword(word))
                put("class ");
            put(word);
            last = word.back();
            i = end;
        }
        else if (c == ' ')
            ++i;
        else if (c == '>')
        {
            put(last == '>' ? " >" : ">");
            last = '>';
            ++i;
        }
        else
        {
            put(std::string_view(&compilerName[i], 1));
            last = c;
            ++i;
        }
    }
    return length;
}

template <typename T>
struct TypeIdentifierText
{
    static constexpr std::string_view compilerName = compilerTypeName(compilerSignature<T>());
    static constexpr size_t length = toFrameworkIdentifier(compilerName, nullptr);
    static constexpr std::array<char, length + 1> text = []
    {
        std::array<char, length + 1> result{};
        toFrameworkIdentifier(compilerName, result.data());
        return result;
    }();
    static constexpr std::string_view view{text.data(), length};
};

} // namespace Tarvik::DataProcessing::Utils::Detail
