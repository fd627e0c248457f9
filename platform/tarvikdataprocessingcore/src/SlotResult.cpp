#include <TarvikDataProcessingCore/utils/SlotResult.h>

namespace Tarvik::DataProcessing::Utils
{

ISlotResult<void>::~ISlotResult() = default;

ValueResult<void>::ValueResult() = default;
ValueResult<void>::~ValueResult() = default;

bool ValueResult<void>::isValid() const
{
    return true;
}

bool ValueResult<void>::hasException() const
{
    return false;
}

void ValueResult<void>::get() {}

} // namespace Tarvik::DataProcessing::Utils
