// The handle of one slot's connection to a signal.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API IConnection
{
public:
    virtual ~IConnection();
    // Takes the slot off the signal. With `wait`, returns only when no call of
    // the slot runs any more on another thread.
    virtual void disconnect(bool wait) = 0;
    // Connected, and the signal still exists.
    virtual bool isConnected() const = 0;
    // A disabled slot stays connected but is not called. Disabling with `wait`
    // returns only when no call of the slot runs any more on another thread.
    virtual void setEnabled(bool enabled, bool wait) = 0;
    virtual bool isEnabled() const = 0;
    // One of the connection's trackables has gone.
    virtual bool isExpired() const = 0;
};

} // namespace Tarvik::DataProcessing::Utils
