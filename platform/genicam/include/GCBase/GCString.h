// GenICam::gcstring: the text type at every GenICam and framework interface.
//
// A thin value class around std::string: comparable, hashable and usable as a
// map key. It is not thread-safe; like std::string, one object belongs to one
// thread at a time.
#pragma once

#include <GCBase/GCBaseExport.h>

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace GenICam
{

class GCBASE_API gcstring
{
public:
    static constexpr size_t npos = std::string::npos;

    gcstring() = default;
    gcstring(const char* text)
        : m_text(text ? text : "")
    {
    }
    gcstring(const char* text, size_t length)
        : m_text(text ? std::string(text, length) : std::string())
    {
    }
    gcstring(size_t count, char character)
        : m_text(count, character)
    {
    }
    gcstring(std::string text)
        : m_text(std::move(text))
    {
    }
    gcstring(std::string_view text)
        : m_text(text)
    {
    }

    const char* c_str() const noexcept { return m_text.c_str(); }
    size_t size() const noexcept { return m_text.size(); }
    size_t length() const noexcept { return m_text.size(); }
    bool empty() const noexcept { return m_text.empty(); }
    void clear() noexcept { m_text.clear(); }

    size_t find(const gcstring& what, size_t from = 0) const noexcept
    {
        return m_text.find(what.m_text, from);
    }
    size_t find(char what, size_t from = 0) const noexcept { return m_text.find(what, from); }
    size_t rfind(char what, size_t from = npos) const noexcept { return m_text.rfind(what, from); }
    gcstring substr(size_t offset, size_t count = npos) const
    {
        return gcstring(m_text.substr(offset, count));
    }

    char operator[](size_t index) const noexcept { return m_text[index]; }

    gcstring& operator+=(const gcstring& other)
    {
        m_text += other.m_text;
        return *this;
    }
    gcstring& operator+=(const char* other)
    {
        m_text += other ? other : "";
        return *this;
    }
    gcstring& operator+=(char other)
    {
        m_text += other;
        return *this;
    }

    operator const char*() const noexcept { return m_text.c_str(); }
    const std::string& str() const noexcept { return m_text; }
    std::string_view view() const noexcept { return m_text; }

    friend bool operator==(const gcstring& a, const gcstring& b) noexcept { return a.m_text == b.m_text; }
    friend bool operator==(const gcstring& a, const char* b) noexcept { return a.m_text == (b ? b : ""); }
    friend auto operator<=>(const gcstring& a, const gcstring& b) noexcept { return a.m_text <=> b.m_text; }
    friend gcstring operator+(gcstring a, const gcstring& b) { return a += b; }
    friend gcstring operator+(gcstring a, const char* b) { return a += b; }
    friend gcstring operator+(const char* a, const gcstring& b) { return gcstring(a) += b; }

private:
    std::string m_text;
};

GCBASE_API std::ostream& operator<<(std::ostream& stream, const gcstring& text);

} // namespace GenICam

template <>
struct std::hash<GenICam::gcstring>
{
    size_t operator()(const GenICam::gcstring& text) const noexcept
    {
        return std::hash<std::string_view>()(text.view());
    }
};
