#include <GCBase/GCException.h>

#include <cstdio>
#include <vector>

namespace GenICam
{

GenericException::GenericException(const char* description, const char* sourceFileName,
                                   unsigned int sourceLine)
    : m_description(description)
    , m_sourceFileName(sourceFileName)
    , m_sourceLine(sourceLine)
    , m_what(m_description + " : " + m_sourceFileName + ":" + gcstring(std::to_string(sourceLine)))
{
}

// Out-of-line destructors anchor each class's type information in this library,
// so that every library that catches them sees one type.
GenericException::~GenericException() = default;
BadAllocException::~BadAllocException() = default;
InvalidArgumentException::~InvalidArgumentException() = default;
OutOfRangeException::~OutOfRangeException() = default;
PropertyException::~PropertyException() = default;
RuntimeException::~RuntimeException() = default;
LogicalErrorException::~LogicalErrorException() = default;
AccessException::~AccessException() = default;
TimeoutException::~TimeoutException() = default;
DynamicCastException::~DynamicCastException() = default;

gcstring FormatV(const char* format, va_list arguments)
{
    if (!format)
        return gcstring();
    va_list measure;
    va_copy(measure, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length <= 0)
        return gcstring();
    std::vector<char> text(static_cast<size_t>(length) + 1);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    return gcstring(text.data(), static_cast<size_t>(length));
}

} // namespace GenICam
