#include "gate.h"

#include "tessalnames.h"

#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>

#include <TarvikViewerDataTypes2/NoValue.h>

#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>
#include <tarvikdataprocessingcore/utils/signal_impl.h>

namespace TarvikViewerTessalPackage
{

using namespace Tarvik::DataProcessing;
namespace GateNames = Names::Gate;

namespace
{
constexpr uint64_t unlimited = ~uint64_t{0};
const char* const outputDescription = "A generic output";
} // namespace

struct Gate::Impl
{
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

    const Utils::Variant noValue{NoValue()};
    createInput(GateNames::GenericInput, "A generic input, allowing many data types.",
                Utils::TypeInfo::get<Core::IValue>(true), noValue, true, false, unlimited);
    createOutput(GateNames::GenericOutput, outputDescription, Utils::TypeInfo::get<Core::IValue>(true), true,
                 unlimited);
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
    Threading::ScopedLock guard(*m_impl->lock);
    if (enable == m_impl->enable)
        return;
    m_impl->enable = enable;
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
    // The node map of "Enable" arrives with the node-map adapter.
    return {};
}

Utils::ISignal<void()>& Gate::getNodeMapsChangedSignal()
{
    return m_impl->nodeMapsChanged;
}

void Gate::onInputTypeConfigured(const GenICam::gcstring& pin, const Utils::TypeInfo& type)
{
    if (pin == GateNames::GenericInput)
    {
        removeOutput(GateNames::GenericOutput);
        createOutput(GateNames::GenericOutput, outputDescription, type, true, unlimited);
    }
    NodeBase::onInputTypeConfigured(pin, type);
}

void Gate::onInputTypeUnconfigured(const GenICam::gcstring& pin)
{
    if (pin == GateNames::GenericInput)
    {
        removeOutput(GateNames::GenericOutput);
        createOutput(GateNames::GenericOutput, outputDescription, Utils::TypeInfo::get<Core::IValue>(true),
                     true, unlimited);
    }
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
