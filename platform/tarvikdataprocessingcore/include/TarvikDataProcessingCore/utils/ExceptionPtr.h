// A caught exception kept for later: errors hold one, so that a client can
// rethrow the original exception.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <exception>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API ExceptionPtr
{
public:
    ExceptionPtr() = default;
    explicit ExceptionPtr(std::exception_ptr exception)
        : m_exception(std::move(exception))
    {
    }

    bool isValid() const { return static_cast<bool>(m_exception); }
    const std::exception_ptr& get() const { return m_exception; }

private:
    std::exception_ptr m_exception;
};

// The exception being handled, inside a catch clause; an empty pointer elsewhere.
TDPC_API ExceptionPtr getCurrentException();
// Throws the kept exception again; an empty pointer throws GenICam::RuntimeException.
[[noreturn]] TDPC_API void rethrowException(const ExceptionPtr& exception);

} // namespace Tarvik::DataProcessing::Utils
