#include <TarvikDataProcessingCore/utils/SlotCallScope.h>

namespace Tarvik::DataProcessing::Utils
{

namespace
{
// The innermost slot call that this thread runs; the calls form a chain outwards.
thread_local const SlotCallScope* innermostCall = nullptr;
} // namespace

SlotCallScope::SlotCallScope(const IConnection* connection) noexcept
    : m_connection(connection)
    , m_outer(innermostCall)
{
    innermostCall = this;
}

SlotCallScope::~SlotCallScope()
{
    innermostCall = m_outer;
}

int64_t SlotCallScope::countOnThisThread(const IConnection* connection) noexcept
{
    int64_t count = 0;
    for (const SlotCallScope* call = innermostCall; call; call = call->m_outer)
        count += call->m_connection == connection ? 1 : 0;
    return count;
}

} // namespace Tarvik::DataProcessing::Utils
