#include "decoupler.h"

#include "decouplertick.h"
#include "genericpins.h"
#include "tessalnames.h"
#include "tessalnodemap.h"

#include <AnythingToNodeMapAdapter/BooleanParameterPortRelay.h>
#include <AnythingToNodeMapAdapter/FloatParameterPortRelay.h>

#include <TarvikDataProcessingCore/utils/Log.h>

#include <tarvikdataprocessingcore/utils/signal_impl.h>

#include <limits>
#include <thread>

namespace TarvikViewerTessalPackage
{

using namespace Tarvik::DataProcessing;
namespace DecouplerNames = Names::Decoupler;

namespace
{

using ThrottleModeRelay =
    AnythingToNodeMapAdapter::BooleanParameterPortRelay<Decoupler, &Decoupler::getThrottleMode,
                                                        &Decoupler::setThrottleMode>;
using FpsRelay =
    AnythingToNodeMapAdapter::FloatParameterPortRelay<Decoupler, &Decoupler::getFps, &Decoupler::setFps>;

// How often a worker without ticks looks at "Fps" and at a stop request.
constexpr std::chrono::milliseconds noTickPoll{20};

int decouplerCategory()
{
    static const int id = Utils::getCatId("tarvik.dataprocessing.tessal.Decoupler");
    return id;
}

} // namespace

// The adapter comes first, so that it goes last: the relays' last owners are then their node-map ports.
struct Decoupler::Impl
{
    AnythingToNodeMapAdapter::CAnythingToNodeMapAdapter adapter;
    std::shared_ptr<ThrottleModeRelay> throttleModePort;
    std::shared_ptr<FpsRelay> fpsPort;
    std::shared_ptr<Threading::RecursiveCLock> lock;
    // The node's maps never change: the signal is never fired.
    Utils::Signal<void()> nodeMapsChanged;
    std::thread thread;
    // Guarded by lock from here on.
    bool stopRequested = false;
    bool sendNextDirectly = false;
    Delivery pending;
    bool hasPending = false;
    bool throttleMode = true;
    double fps = 25.0;
};

Decoupler::Decoupler(const std::shared_ptr<Core::IResourcePool>& resourcePool)
    : AdvancedNode(resourcePool)
    , m_impl(std::make_unique<Impl>())
{
    m_impl->lock = std::make_shared<Threading::RecursiveCLock>();
    setLock(m_impl->lock);

    Detail::GenericPins::declare(*this, DecouplerNames::GenericInput, DecouplerNames::GenericOutput);

    m_impl->throttleModePort = std::make_shared<ThrottleModeRelay>(
        this, DecouplerNames::ThrottleMode, "Throttle mode", "Enable throttle mode to limit fps",
        "Enable throttle mode to limit fps", "Guru", true, true, true, true);
    m_impl->fpsPort = std::make_shared<FpsRelay>(
        this, DecouplerNames::Fps, "Frames per Seconds", "Frames per Seconds", "Frames per Seconds", "Guru",
        true, true, true, true, 0.0, std::numeric_limits<double>::max(), "Linear", "");
    Detail::publishParameters(m_impl->adapter, *m_impl->lock, m_impl->throttleModePort, m_impl->fpsPort);
}

Decoupler::~Decoupler()
{
    cleanup();
}

Utils::TypeInfo Decoupler::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<Decoupler>(mustExist);
}

const void* Decoupler::getRawPointer() const
{
    return this;
}

void* Decoupler::getRawPointer()
{
    return this;
}

bool Decoupler::isSynchronous() const
{
    return false;
}

Core::UpdateOutputs Decoupler::run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap inputs)
{
    bool throttleMode = true;
    bool sendDirectly = false;
    {
        Threading::ScopedLock guard(*m_impl->lock);
        throttleMode = m_impl->throttleMode;
        sendDirectly = std::exchange(m_impl->sendNextDirectly, false);
    }
    Delivery delivery{update, {{DecouplerNames::GenericOutput, inputs[DecouplerNames::GenericInput]}}};
    if (throttleMode && !sendDirectly)
    {
        // The value that waited until now is swapped out and dropped when run() ends, outside the lock.
        Threading::ScopedLock guard(*m_impl->lock);
        std::swap(m_impl->pending, delivery);
        m_impl->hasPending = true;
    }
    else
    {
        sendOutput(delivery, false);
    }
    return {{update, {}}};
}

void Decoupler::work()
{
    for (;;)
    {
        bool stopRequested = false;
        double fps = 0.0;
        {
            Threading::ScopedLock guard(*m_impl->lock);
            stopRequested = m_impl->stopRequested;
            fps = m_impl->fps;
        }
        if (stopRequested)
            return;

        const std::optional<std::chrono::milliseconds> period = Detail::tickPeriod(fps);
        if (!period)
        {
            std::this_thread::sleep_for(noTickPoll);
            continue;
        }
        if (period->count() > 0)
            std::this_thread::sleep_for(*period);

        bool hasPending = false;
        bool throttleMode = true;
        {
            Threading::ScopedLock guard(*m_impl->lock);
            hasPending = m_impl->hasPending;
            throttleMode = m_impl->throttleMode;
        }
        // Without throttling run() sends every value itself; one that waited stays for later.
        if (!throttleMode)
            continue;

        Delivery delivery;
        {
            Threading::ScopedLock guard(*m_impl->lock);
            if (hasPending)
            {
                std::swap(delivery, m_impl->pending);
                m_impl->hasPending = false;
            }
            else
            {
                // Nothing waited at this tick: the next value need not wait for the next one.
                m_impl->sendNextDirectly = true;
            }
        }
        if (hasPending)
            sendOutput(delivery, true);
    }
}

void Decoupler::sendOutput(const Delivery& delivery, bool wait) noexcept
{
    const char* const format = "Decoupler %p: Exception caught while sending output data. Message: %s";
    try
    {
        const std::shared_ptr<Core::IGraphUpdate> update =
            getUpdateFactory()->createUpdate(this, {delivery.first}, nullptr);
        if (!update)
            return;
        if (wait && !waitUntilSpaceAvailable())
            return;
        createJob(update, delivery.second, {});
    }
    catch (const GenICam::GenericException& e)
    {
        Utils::createLogEntry(Utils::Severitiy_Warning, decouplerCategory(), format,
                              static_cast<const void*>(this), e.GetDescription());
    }
    catch (const std::exception& e)
    {
        Utils::createLogEntry(Utils::Severitiy_Warning, decouplerCategory(), format,
                              static_cast<const void*>(this), e.what());
    }
    catch (...)
    {
        Utils::createLogEntry(Utils::Severitiy_Warning, decouplerCategory(),
                              "Decoupler %p: Unknown exception caught while sending output data.",
                              static_cast<const void*>(this));
    }
}

void Decoupler::onStarting(const Core::NodeArgumentCollection&)
{
    Threading::ScopedLock guard(*m_impl->lock);
    m_impl->stopRequested = false;
    m_impl->sendNextDirectly = true;
    m_impl->thread = std::thread([this] { work(); });
}

void Decoupler::onStopping()
{
    {
        Threading::ScopedLock guard(*m_impl->lock);
        m_impl->stopRequested = true;
    }
    // Without the lock: the worker takes it to see the stop request.
    m_impl->thread.join();
    Threading::ScopedLock guard(*m_impl->lock);
    m_impl->pending = {};
    m_impl->hasPending = false;
}

bool Decoupler::getThrottleMode() const
{
    Threading::ScopedLock guard(*m_impl->lock);
    return m_impl->throttleMode;
}

void Decoupler::setThrottleMode(bool throttleMode)
{
    Detail::storeAndNotify(*m_impl->lock, m_impl->throttleMode, throttleMode, *m_impl->throttleModePort);
}

double Decoupler::getFps() const
{
    Threading::ScopedLock guard(*m_impl->lock);
    return m_impl->fps;
}

void Decoupler::setFps(double fps)
{
    Detail::storeAndNotify(*m_impl->lock, m_impl->fps, fps, *m_impl->fpsPort);
}

void Decoupler::load(const std::shared_ptr<Core::ISettings>& settings)
{
    if (!settings)
        return;
    if (settings->contains(DecouplerNames::ThrottleMode))
        setThrottleMode(settings->getBool(DecouplerNames::ThrottleMode));
    if (settings->contains(DecouplerNames::Fps))
        setFps(settings->getDouble(DecouplerNames::Fps));
}

void Decoupler::save(const std::shared_ptr<Core::ISettings>& settings)
{
    if (!settings)
        return;
    settings->setBool(DecouplerNames::ThrottleMode, getThrottleMode());
    settings->setDouble(DecouplerNames::Fps, getFps());
}

std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> Decoupler::getNodeMaps()
{
    Threading::ScopedLock guard(*m_impl->lock);
    return Detail::tessalNodeMaps(m_impl->adapter);
}

Utils::ISignal<void()>& Decoupler::getNodeMapsChangedSignal()
{
    return m_impl->nodeMapsChanged;
}

void Decoupler::onInputTypeConfigured(const GenICam::gcstring& pin, const Utils::TypeInfo& type)
{
    if (pin == DecouplerNames::GenericInput)
        Detail::GenericPins::declareOutput(*this, DecouplerNames::GenericOutput, type);
    NodeBase::onInputTypeConfigured(pin, type);
}

void Decoupler::onInputTypeUnconfigured(const GenICam::gcstring& pin)
{
    if (pin == DecouplerNames::GenericInput)
        Detail::GenericPins::declareOutput(*this, DecouplerNames::GenericOutput,
                                           Utils::TypeInfo::get<Core::IValue>(true));
    NodeBase::onInputTypeUnconfigured(pin);
}

// Registers the class when the library loads: the last step of this unit.
namespace
{
const Utils::TypeRegistrar<Decoupler, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>, Utils::DirectBase<Core::INodeMapContainer>>
    decouplerRegistrar("TarvikViewerTessalPackage::Decoupler");
} // namespace

} // namespace TarvikViewerTessalPackage
