// Errors that a value carries instead of data.
#pragma once

#include <TarvikDataProcessingCore/utils/DateTime.h>
#include <TarvikDataProcessingCore/utils/ExceptionPtr.h>

#include <GCBase/GCString.h>

#include <memory>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API IError
{
public:
    virtual ~IError();
    virtual GenICam::gcstring getDescription() const = 0;
    virtual Utils::DateTime getTimestamp() const = 0;
    // The error this one was caused by, or null.
    virtual std::shared_ptr<IError> getCause() const = 0;
};

// A value that failed a check: the description says why.
class TDPC_API InvalidValueError : public IError
{
public:
    InvalidValueError(const GenICam::gcstring& description, const Utils::DateTime& timestamp,
                      std::shared_ptr<IError> cause = nullptr);
    ~InvalidValueError() override;

    GenICam::gcstring getDescription() const override;
    Utils::DateTime getTimestamp() const override;
    std::shared_ptr<IError> getCause() const override;

private:
    GenICam::gcstring m_description;
    Utils::DateTime m_timestamp;
    std::shared_ptr<IError> m_cause;
};

// An error made from a caught exception, which it keeps for rethrowing.
class TDPC_API ExceptionErrorBase : public InvalidValueError
{
public:
    ExceptionErrorBase(const GenICam::gcstring& description, const Utils::DateTime& timestamp,
                       Utils::ExceptionPtr exception);
    ~ExceptionErrorBase() override;

    const Utils::ExceptionPtr& getException() const;

private:
    Utils::ExceptionPtr m_exception;
};

class TDPC_API GenICamExceptionError : public ExceptionErrorBase
{
public:
    using ExceptionErrorBase::ExceptionErrorBase;
    ~GenICamExceptionError() override;
};

class TDPC_API StdExceptionError : public ExceptionErrorBase
{
public:
    using ExceptionErrorBase::ExceptionErrorBase;
    ~StdExceptionError() override;
};

class TDPC_API UnknownExceptionError : public ExceptionErrorBase
{
public:
    using ExceptionErrorBase::ExceptionErrorBase;
    ~UnknownExceptionError() override;
};

} // namespace Tarvik::DataProcessing::Core
