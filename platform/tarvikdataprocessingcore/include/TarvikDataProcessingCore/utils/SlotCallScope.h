// Which slots the current thread is running. A connection asked to wait for the
// calls of its slot waits only for those on other threads, so that a slot may
// disconnect or disable its own connection with waiting and not wait for itself.
#pragma once

#include <TarvikDataProcessingCore/utils/IConnection.h>

#include <cstdint>

namespace Tarvik::DataProcessing::Utils
{

// Marks, for its lifetime, one call of the slot of `connection` on this thread.
// Lives on the stack around the call.
class TDPC_API SlotCallScope
{
public:
    explicit SlotCallScope(const IConnection* connection) noexcept;
    ~SlotCallScope();
    SlotCallScope(const SlotCallScope&) = delete;
    SlotCallScope& operator=(const SlotCallScope&) = delete;

    // The calls of the slot of `connection` that this thread is running now:
    // more than one when the slot fires its own signal again.
    static int64_t countOnThisThread(const IConnection* connection) noexcept;

private:
    const IConnection* m_connection;
    const SlotCallScope* m_outer;
};

} // namespace Tarvik::DataProcessing::Utils
