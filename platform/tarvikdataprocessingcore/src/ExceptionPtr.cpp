#include <TarvikDataProcessingCore/utils/ExceptionPtr.h>

#include <GCBase/GCException.h>

namespace Tarvik::DataProcessing::Utils
{

ExceptionPtr getCurrentException()
{
    return ExceptionPtr(std::current_exception());
}

void rethrowException(const ExceptionPtr& exception)
{
    if (!exception.isValid())
        throw RUNTIME_EXCEPTION("No exception to rethrow.");
    std::rethrow_exception(exception.get());
}

} // namespace Tarvik::DataProcessing::Utils
