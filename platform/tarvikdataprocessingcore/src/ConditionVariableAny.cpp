#include <TarvikDataProcessingCore/threading/ConditionVariableAny.h>

namespace Tarvik::DataProcessing::Threading
{

ConditionVariableAny::ConditionVariableAny() = default;
ConditionVariableAny::~ConditionVariableAny() = default;

void ConditionVariableAny::notifyAll()
{
    if (m_waiters.load() > 0)
        m_condition.notify_all();
}

void ConditionVariableAny::waitInternal(IRecursiveLockable& lockable)
{
    m_waiters.fetch_add(1);
    m_condition.wait(lockable);
    m_waiters.fetch_sub(1);
}

} // namespace Tarvik::DataProcessing::Threading
