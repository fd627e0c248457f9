// A lock that one thread may take again while it holds it; it must unlock as
// often as it locked. lock() and unlock() are expected not to throw.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

namespace Tarvik::DataProcessing::Threading
{

class TDPC_API IRecursiveLockable
{
public:
    virtual ~IRecursiveLockable();
    virtual void lock() = 0;
    virtual void unlock() = 0;
};

} // namespace Tarvik::DataProcessing::Threading
