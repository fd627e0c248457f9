#include "gate.h"

#include "genericpins.h"
#include "tessalnames.h"
#include "tessalnodemap.h"

#include <AnythingToNodeMapAdapter/BooleanParameterPortRelay.h>

#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>
#include <tarvikdataprocessingcore/utils/signal_impl.h>

namespace TarvikViewerTessalPackage
{

using namespace Tarvik::DataProcessing;
namespace GateNames = Names::Gate;

namespace
{
using EnableRelay =
    AnythingToNodeMapAdapter::BooleanParameterPortRelay<Gate, &Gate::getEnable, &Gate::setEnable>;
} // namespace

// The adapter comes first, so that it goes last: the relay's last owner is then its node-map port.
struct Gate::Impl
{
    AnythingToNodeMapAdapter::CAnythingToNodeMapAdapter adapter;
    std::shared_ptr<EnableRelay> enablePort;
    std::shared_ptr<Threading::RecursiveCLock> lock;
    // Gate's maps never change: the signal is never fired.
    Utils::Signal<void()> nodeMapsChanged;
    bool enable = false;
};

Gate::Gate(const std::shared_ptr<Core::IResourcePool>& resourcePool)
    : AdvancedNode(resourcePool)
    , m_impl(std::make_unique<Impl>())
{
    m_impl->lock = std::make_shared<Threading::RecursiveCLock>();
    setLock(m_impl->lock);

    Detail::GenericPins::declare(*this, GateNames::GenericInput, GateNames::GenericOutput);

    m_impl->enablePort =
        std::make_shared<EnableRelay>(this, GateNames::Enable, "Enable", "Enable passthrough of data",
                                      "Enable passthrough of data", "Guru", true, true, true, true);
    Detail::publishParameters(m_impl->adapter, *m_impl->lock, m_impl->enablePort);
}

Gate::~Gate()
{
    cleanup();
}

Utils::TypeInfo Gate::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<Gate>(mustExist);
}

const void* Gate::getRawPointer() const
{
    return this;
}

void* Gate::getRawPointer()
{
    return this;
}

bool Gate::isSynchronous() const
{
    return true;
}

Core::UpdateOutputs Gate::run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap inputs)
{
    bool enable = false;
    {
        Threading::UniqueLock guard(getLock().get());
        enable = m_impl->enable;
        guard.unlock();
    }
    Core::ValueMap outputs;
    if (enable)
        outputs[GateNames::GenericOutput] = inputs[GateNames::GenericInput];
    return {{update, std::move(outputs)}};
}

bool Gate::getEnable() const
{
    Threading::ScopedLock guard(*m_impl->lock);
    return m_impl->enable;
}

void Gate::setEnable(bool enable)
{
    Detail::storeAndNotify(*m_impl->lock, m_impl->enable, enable, *m_impl->enablePort);
}

void Gate::load(const std::shared_ptr<Core::ISettings>& settings)
{
    if (!settings)
        return;
    if (settings->contains(GateNames::Enable))
        setEnable(settings->getBool(GateNames::Enable));
}

void Gate::save(const std::shared_ptr<Core::ISettings>& settings)
{
    if (!settings)
        return;
    settings->setBool(GateNames::Enable, getEnable());
}

std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> Gate::getNodeMaps()
{
    Threading::ScopedLock guard(*m_impl->lock);
    return Detail::tessalNodeMaps(m_impl->adapter);
}

Utils::ISignal<void()>& Gate::getNodeMapsChangedSignal()
{
    return m_impl->nodeMapsChanged;
}

void Gate::onInputTypeConfigured(const GenICam::gcstring& pin, const Utils::TypeInfo& type)
{
    if (pin == GateNames::GenericInput)
        Detail::GenericPins::declareOutput(*this, GateNames::GenericOutput, type);
    NodeBase::onInputTypeConfigured(pin, type);
}

void Gate::onInputTypeUnconfigured(const GenICam::gcstring& pin)
{
    if (pin == GateNames::GenericInput)
        Detail::GenericPins::declareOutput(*this, GateNames::GenericOutput,
                                           Utils::TypeInfo::get<Core::IValue>(true));
    NodeBase::onInputTypeUnconfigured(pin);
}

// Registers the class when the library loads: the last step of this unit.
namespace
{
const Utils::TypeRegistrar<Gate, Utils::DirectBase<Core::AdvancedNode>, Utils::IndirectBase<Core::NodeBase>,
                           Utils::IndirectBase<Core::INode>, Utils::IndirectBase<Utils::IObject>,
                           Utils::DirectBase<Core::INodeMapContainer>>
    gateRegistrar("TarvikViewerTessalPackage::Gate");
} // namespace

} // namespace TarvikViewerTessalPackage
