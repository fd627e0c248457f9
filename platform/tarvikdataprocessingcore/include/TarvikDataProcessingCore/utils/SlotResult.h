// The outcome of one slot call: it returned, or it threw. A signal collects one
// result per call and hands them to its combiner after the calls.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

namespace Tarvik::DataProcessing::Utils
{

template <typename R>
class ISlotResult;

template <>
class TDPC_API ISlotResult<void>
{
public:
    virtual ~ISlotResult();
    virtual bool isValid() const = 0;
    virtual bool hasException() const = 0;
    // Rethrows what the slot threw, if anything.
    virtual void get() = 0;
};

template <typename R>
class ValueResult;

// A call that returned.
template <>
class TDPC_API ValueResult<void> final : public ISlotResult<void>
{
public:
    ValueResult();
    ~ValueResult() override;
    bool isValid() const override;
    bool hasException() const override;
    void get() override;
};

// A call that threw; defined in the template half.
template <typename R>
class ExceptionResult;

} // namespace Tarvik::DataProcessing::Utils

#include <tarvikdataprocessingcore/utils/slotresult_impl.h>
