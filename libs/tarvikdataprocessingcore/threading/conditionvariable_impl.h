// Template half of ConditionVariableAny: the wait on a UniqueLock.
//
// The wait hands the lockable itself to waitInternal, which releases and retakes
// it as one step. The UniqueLock's owned flag stays set throughout: to anyone
// who holds the lockable, its owner never gave it up.
#pragma once

#include <TarvikDataProcessingCore/threading/ConditionVariableAny.h>
#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>

#include <GCBase/GCException.h>

namespace Tarvik::DataProcessing::Threading
{

inline void ConditionVariableAny::wait(UniqueLock& lock)
{
    if (!lock.m_lockable || !lock.m_owned)
        throw INVALID_ARGUMENT_EXCEPTION("Passed unique lock does not own a lockable.");
    waitInternal(*lock.m_lockable);
}

} // namespace Tarvik::DataProcessing::Threading
