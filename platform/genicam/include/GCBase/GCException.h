// The GenICam exception family. Every exception carries its description, the
// source file it was raised in and the line, as the throwing site gave them.
//
// Raise them through the macros at the end of this file, which take a
// printf-style format and record __FILE__ and __LINE__:
//
//     throw RUNTIME_EXCEPTION("Feature '%s' is not writable", name.c_str());
#pragma once

#include <GCBase/GCBaseExport.h>
#include <GCBase/GCString.h>

#include <cstdarg>
#include <exception>

namespace GenICam
{

class GCBASE_API GenericException : public std::exception
{
public:
    GenericException(const char* description, const char* sourceFileName, unsigned int sourceLine);
    ~GenericException() override;

    GenericException(const GenericException&) = default;
    GenericException& operator=(const GenericException&) = default;

    // The message text alone.
    const char* GetDescription() const noexcept { return m_description.c_str(); }
    const char* GetSourceFileName() const noexcept { return m_sourceFileName.c_str(); }
    unsigned int GetSourceLine() const noexcept { return m_sourceLine; }
    // The exception's class name, as in "RuntimeException".
    virtual const char* GetExceptionName() const noexcept { return "GenericException"; }

    // Description followed by the source position, for logs.
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    gcstring m_description;
    gcstring m_sourceFileName;
    unsigned int m_sourceLine;
    gcstring m_what;
};

#define GCBASE_DECLARE_EXCEPTION(Name)                                                                       \
    class GCBASE_API Name : public GenericException                                                          \
    {                                                                                                        \
    public:                                                                                                  \
        using GenericException::GenericException;                                                            \
        ~Name() override;                                                                                    \
        const char* GetExceptionName() const noexcept override { return #Name; }                             \
    }

GCBASE_DECLARE_EXCEPTION(BadAllocException);
GCBASE_DECLARE_EXCEPTION(InvalidArgumentException);
GCBASE_DECLARE_EXCEPTION(OutOfRangeException);
GCBASE_DECLARE_EXCEPTION(PropertyException);
GCBASE_DECLARE_EXCEPTION(RuntimeException);
GCBASE_DECLARE_EXCEPTION(LogicalErrorException);
GCBASE_DECLARE_EXCEPTION(AccessException);
GCBASE_DECLARE_EXCEPTION(TimeoutException);
GCBASE_DECLARE_EXCEPTION(DynamicCastException);

#undef GCBASE_DECLARE_EXCEPTION

// Formats a description and builds an exception of type E at a fixed source position.
template <typename E>
class ExceptionReporter
{
public:
    ExceptionReporter(const char* sourceFileName, unsigned int sourceLine)
        : m_sourceFileName(sourceFileName)
        , m_sourceLine(sourceLine)
    {
    }

    E Report(const char* format, ...) const __attribute__((format(printf, 2, 3)));

private:
    const char* m_sourceFileName;
    unsigned int m_sourceLine;
};

// Formats printf-style into a gcstring; a null format gives an empty text.
GCBASE_API gcstring FormatV(const char* format, va_list arguments);

template <typename E>
E ExceptionReporter<E>::Report(const char* format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    const gcstring description = FormatV(format, arguments);
    va_end(arguments);
    return E(description.c_str(), m_sourceFileName, m_sourceLine);
}

} // namespace GenICam

#define GENICAM_EXCEPTION_AT(Type) ::GenICam::ExceptionReporter<::GenICam::Type>(__FILE__, __LINE__).Report
#define GENERIC_EXCEPTION GENICAM_EXCEPTION_AT(GenericException)
#define BAD_ALLOC_EXCEPTION GENICAM_EXCEPTION_AT(BadAllocException)
#define INVALID_ARGUMENT_EXCEPTION GENICAM_EXCEPTION_AT(InvalidArgumentException)
#define OUT_OF_RANGE_EXCEPTION GENICAM_EXCEPTION_AT(OutOfRangeException)
#define PROPERTY_EXCEPTION GENICAM_EXCEPTION_AT(PropertyException)
#define RUNTIME_EXCEPTION GENICAM_EXCEPTION_AT(RuntimeException)
#define LOGICAL_ERROR_EXCEPTION GENICAM_EXCEPTION_AT(LogicalErrorException)
#define ACCESS_EXCEPTION GENICAM_EXCEPTION_AT(AccessException)
#define TIMEOUT_EXCEPTION GENICAM_EXCEPTION_AT(TimeoutException)
#define DYNAMICCAST_EXCEPTION GENICAM_EXCEPTION_AT(DynamicCastException)
