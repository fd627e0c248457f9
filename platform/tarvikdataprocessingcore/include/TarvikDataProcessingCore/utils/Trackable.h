// Trackables: objects that must be alive for a slot to be called. A connection
// made with trackables skips its slot once any of them has gone, and its signal
// then drops the connection.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <memory>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API ITrackable
{
public:
    virtual ~ITrackable();
    virtual bool isExpired() const = 0;
    // Keeps the tracked object alive while the result is held; null when it has gone.
    virtual std::shared_ptr<void> lock() const = 0;
};

// Tracks an object held by shared_ptr, without keeping it alive.
// Thread-safe, as weak_ptr is.
template <typename T>
class WeakTrackable final : public ITrackable
{
public:
    explicit WeakTrackable(const std::shared_ptr<T>& object) noexcept
        : m_object(object)
    {
    }
    bool isExpired() const override { return m_object.expired(); }
    std::shared_ptr<void> lock() const override { return m_object.lock(); }

private:
    std::weak_ptr<T> m_object;
};

template <typename T>
std::shared_ptr<ITrackable> makeTrackable(const std::shared_ptr<T>& object)
{
    return std::make_shared<WeakTrackable<T>>(object);
}

} // namespace Tarvik::DataProcessing::Utils
