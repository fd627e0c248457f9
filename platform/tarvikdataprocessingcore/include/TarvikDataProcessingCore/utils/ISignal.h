// The interface of a signal: what a client needs to observe it. Who owns the
// signal fires it through the concrete Signal.
#pragma once

#include <TarvikDataProcessingCore/utils/IConnection.h>
#include <TarvikDataProcessingCore/utils/Trackable.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace Tarvik::DataProcessing::Utils
{

template <typename Signature>
class ISignal;

template <>
class TDPC_API ISignal<void()>
{
public:
    // The slot is called on each firing while the connection is connected and
    // enabled and all `trackables` live. Raises GenICam::InvalidArgumentException
    // for an empty slot and GenICam::BadAllocException for a null trackable.
    virtual std::shared_ptr<IConnection>
    connect(std::function<void()> slot, std::vector<std::shared_ptr<ITrackable>> trackables = {}) = 0;
    virtual ~ISignal();
    virtual bool isEmpty() const = 0;
    // Connections whose trackables have gone count until the signal drops them.
    virtual size_t getConnectionCount() const = 0;
};

} // namespace Tarvik::DataProcessing::Utils
