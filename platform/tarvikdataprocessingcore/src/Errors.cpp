#include <TarvikDataProcessingCore/core/Errors.h>

namespace Tarvik::DataProcessing::Core
{

IError::~IError() = default;

InvalidValueError::InvalidValueError(const GenICam::gcstring& description, const Utils::DateTime& timestamp,
                                     std::shared_ptr<IError> cause)
    : m_description(description)
    , m_timestamp(timestamp)
    , m_cause(std::move(cause))
{
}
InvalidValueError::~InvalidValueError() = default;
GenICam::gcstring InvalidValueError::getDescription() const
{
    return m_description;
}
Utils::DateTime InvalidValueError::getTimestamp() const
{
    return m_timestamp;
}
std::shared_ptr<IError> InvalidValueError::getCause() const
{
    return m_cause;
}

ExceptionErrorBase::ExceptionErrorBase(const GenICam::gcstring& description, const Utils::DateTime& timestamp,
                                       Utils::ExceptionPtr exception)
    : InvalidValueError(description, timestamp)
    , m_exception(std::move(exception))
{
}
ExceptionErrorBase::~ExceptionErrorBase() = default;
const Utils::ExceptionPtr& ExceptionErrorBase::getException() const
{
    return m_exception;
}

GenICamExceptionError::~GenICamExceptionError() = default;
StdExceptionError::~StdExceptionError() = default;
UnknownExceptionError::~UnknownExceptionError() = default;

} // namespace Tarvik::DataProcessing::Core
