// Template half of the slot results: the result of a call that threw, and the
// combiner that ends every exception of a signal's slots in a log line.
#pragma once

#include <TarvikDataProcessingCore/utils/ExceptionPtr.h>
#include <TarvikDataProcessingCore/utils/Log.h>
#include <TarvikDataProcessingCore/utils/SlotResult.h>

#include <GCBase/GCException.h>

#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace Tarvik::DataProcessing::Utils
{

// Holds what a slot threw until get() rethrows it, once. Not thread-safe: a
// result belongs to the firing that made it.
template <>
class ExceptionResult<void> final : public ISlotResult<void>
{
public:
    explicit ExceptionResult(ExceptionPtr exception)
        : m_exception(std::move(exception))
    {
        if (!m_exception.isValid())
            throw INVALID_ARGUMENT_EXCEPTION("Invalid exception pointer passed.");
    }

    bool isValid() const override { return m_exception.isValid(); }

    bool hasException() const override
    {
        if (!m_exception.isValid())
            throw RUNTIME_EXCEPTION("Result is not valid.");
        return true;
    }

    void get() override
    {
        if (!m_exception.isValid())
            throw RUNTIME_EXCEPTION("Result is not valid.");
        const ExceptionPtr exception = std::exchange(m_exception, ExceptionPtr());
        rethrowException(exception);
    }

private:
    ExceptionPtr m_exception;
};

using SlotResults = std::vector<std::unique_ptr<ISlotResult<void>>>;

// Takes the results of one firing in the order of the calls. An exception of a
// slot is logged and goes no further, so that it neither stops the other
// results nor reaches the one who fired.
class VoidCombiner
{
public:
    void operator()(const SlotResults& results) const
    {
        for (const std::unique_ptr<ISlotResult<void>>& result : results)
        {
            try
            {
                result->get();
            }
            catch (const GenICam::GenericException& e)
            {
                createLogEntry(Severitiy_Warning, category(),
                               "SlotCombiner %p: Exception caught while invoking a slot. Message: %s",
                               static_cast<const void*>(this), e.GetDescription());
            }
            catch (const std::exception& e)
            {
                createLogEntry(Severitiy_Warning, category(),
                               "SlotCombiner %p: Exception caught while invoking a slot. Message: %s",
                               static_cast<const void*>(this), e.what());
            }
            catch (...)
            {
                createLogEntry(Severitiy_Warning, category(),
                               "SlotCombiner %p: Unknown exception caught while invoking a slot.",
                               static_cast<const void*>(this));
            }
        }
    }

private:
    static int category()
    {
        static const int id = getCatId("tarvik.dataprocessing.utils.SlotCombiner");
        return id;
    }
};

} // namespace Tarvik::DataProcessing::Utils
