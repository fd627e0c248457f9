// Decoupler: cuts a generic stream loose from the rate of its source. Each
// value leaves on a new graph update of its own, whose parent is the update
// that brought it in; run() itself outputs nothing.
//
// With "ThrottleMode" on, a worker thread lets the newest value through at
// each tick, at most "Fps" times a second, and the values in between are
// dropped: run() only swaps the value into a slot of depth one. A value that
// finds no value waiting since the last tick (the first after a start, or the
// first after a tick with nothing to send) goes out at once, inside run().
// With "ThrottleMode" off, every value goes out inside its run(), without
// waiting for space downstream.
//
// The tick period is 1000 / "Fps" milliseconds, truncated; above 1000 fps, and
// at 0, negative or NaN, the worker does not wait between ticks. A positive
// "Fps" whose period does not fit a 64-bit count of nanoseconds (below about
// 1.08e-10, a tick less than once in 292 years) means no tick at all: values
// wait in the slot, and the worker looks at "Fps" and at a stop request every
// 20 ms, so that a new "Fps" takes effect and onStopping() returns promptly.
// Otherwise the sleep between ticks is not interrupted: onStopping() lasts up
// to one period and one delivery.
//
// Thread-safe: the parameters, the slot and the worker's flags are guarded by
// the node's lock, which the node map shares and which is never held while
// sleeping or delivering. onStarting() and onStopping() alternate, as the
// framework calls them.
#pragma once

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>

#include <memory>
#include <utility>

namespace TarvikViewerTessalPackage
{

namespace Detail
{
struct GenericPins;
}

class Decoupler : public Tarvik::DataProcessing::Core::AdvancedNode,
                  public Tarvik::DataProcessing::Core::INodeMapContainer
{
public:
    explicit Decoupler(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool);
    ~Decoupler() override;

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override;
    void* getRawPointer() override;
    bool isSynchronous() const override;

    // Never outputs on `update`: the value leaves on an update of its own.
    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    void load(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>& settings) override;
    void save(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>& settings) override;

    std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> getNodeMaps() override;
    Tarvik::DataProcessing::Utils::ISignal<void()>& getNodeMapsChangedSignal() override;

    // The setters tell the node map's observer once per real change; a NaN "Fps"
    // differs from everything.
    bool getThrottleMode() const;
    void setThrottleMode(bool throttleMode);
    double getFps() const;
    void setFps(double fps);

protected:
    void onInputTypeConfigured(const GenICam::gcstring& pin,
                               const Tarvik::DataProcessing::Utils::TypeInfo& type) override;
    void onInputTypeUnconfigured(const GenICam::gcstring& pin) override;
    // Starts the worker; the first value after it goes out inside run(). Raises
    // std::system_error if no thread can be started.
    void onStarting(const Tarvik::DataProcessing::Core::NodeArgumentCollection& arguments) override;
    // Ends and joins the worker, then drops a value that still waits.
    void onStopping() override;

private:
    friend struct Detail::GenericPins;

    // A value on its way out: the update that brought it in, and the outputs.
    using Delivery = std::pair<std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>,
                               Tarvik::DataProcessing::Core::ValueMap>;

    void work();
    // Delivers on a new update after the delivery's own, waiting for space if `wait`.
    // Logs and swallows every failure.
    void sendOutput(const Delivery& delivery, bool wait) noexcept;

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace TarvikViewerTessalPackage
