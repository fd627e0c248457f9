#include <TarvikDataProcessingCore/core/INodeMapContainer.h>
#include <TarvikDataProcessingCore/core/NodeBase.h>

#include <algorithm>

namespace Tarvik::DataProcessing
{

Utils::ISerializable::~ISerializable() = default;

namespace Core
{

INode::~INode() = default;
INodeMapContainer::~INodeMapContainer() = default;

NodeBase::NodeBase() = default;
NodeBase::~NodeBase() = default;

void NodeBase::setLock(std::shared_ptr<Threading::IRecursiveLockable> lock)
{
    std::lock_guard guard(m_mutex);
    m_lock = std::move(lock);
}

std::shared_ptr<Threading::IRecursiveLockable> NodeBase::getLock() const
{
    std::lock_guard guard(m_mutex);
    return m_lock;
}

namespace
{
void removePin(std::vector<PinDescriptor>& pins, const GenICam::gcstring& name)
{
    std::erase_if(pins, [&](const PinDescriptor& pin) { return pin.name == name; });
}
} // namespace

void NodeBase::createInput(const GenICam::gcstring& name, const GenICam::gcstring& description,
                           const Utils::TypeInfo& type, bool flag, uint64_t limit)
{
    addPin(m_inputs, "input", {name, description, type, {}, false, false, flag, limit, {}});
}

void NodeBase::createInput(const GenICam::gcstring& name, const GenICam::gcstring& description,
                           const Utils::TypeInfo& type, const Utils::Variant& defaultValue, bool configurable,
                           bool flag, uint64_t limit)
{
    addPin(m_inputs, "input", {name, description, type, defaultValue, true, configurable, flag, limit, {}});
}

void NodeBase::createOutput(const GenICam::gcstring& name, const GenICam::gcstring& description,
                            const Utils::TypeInfo& type, bool flag, uint64_t limit)
{
    addPin(m_outputs, "output", {name, description, type, {}, false, false, flag, limit, {}});
}

void NodeBase::addPin(std::vector<PinDescriptor>& pins, const char* direction, PinDescriptor pin)
{
    std::lock_guard guard(m_mutex);
    if (std::any_of(pins.begin(), pins.end(), [&](const PinDescriptor& p) { return p.name == pin.name; }))
        throw INVALID_ARGUMENT_EXCEPTION("The %s pin '%s' exists already.", direction, pin.name.c_str());
    pins.push_back(std::move(pin));
}

void NodeBase::removeInput(const GenICam::gcstring& name)
{
    std::lock_guard guard(m_mutex);
    removePin(m_inputs, name);
}

void NodeBase::removeOutput(const GenICam::gcstring& name)
{
    std::lock_guard guard(m_mutex);
    removePin(m_outputs, name);
}

std::vector<PinDescriptor> NodeBase::getInputDescriptors() const
{
    std::lock_guard guard(m_mutex);
    return m_inputs;
}

std::vector<PinDescriptor> NodeBase::getOutputDescriptors() const
{
    std::lock_guard guard(m_mutex);
    return m_outputs;
}

PinDescriptor* NodeBase::findInput(const GenICam::gcstring& name)
{
    const auto it = std::find_if(m_inputs.begin(), m_inputs.end(),
                                 [&](const PinDescriptor& pin) { return pin.name == name; });
    return it == m_inputs.end() ? nullptr : &*it;
}

const PinDescriptor* NodeBase::findInput(const GenICam::gcstring& name) const
{
    return const_cast<NodeBase*>(this)->findInput(name);
}

bool NodeBase::canConfigure(const GenICam::gcstring& pin, const Utils::TypeInfo& type) const
{
    std::lock_guard guard(m_mutex);
    const PinDescriptor* const input = findInput(pin);
    return input && input->configurable && type.canConvert(input->type);
}

void NodeBase::configureInputType(const GenICam::gcstring& pin, const Utils::TypeInfo& type)
{
    std::lock_guard guard(m_mutex);
    PinDescriptor* const input = findInput(pin);
    if (!input)
        throw INVALID_ARGUMENT_EXCEPTION("No input pin '%s'.", pin.c_str());
    if (!input->configurable)
        throw INVALID_ARGUMENT_EXCEPTION("Input pin '%s' is not configurable.", pin.c_str());
    if (!type.canConvert(input->type))
        throw INVALID_ARGUMENT_EXCEPTION("Input pin '%s' cannot take values of type '%s'.", pin.c_str(),
                                         type.getName().c_str());
    input->configuredType = type;
    onInputTypeConfigured(pin, type);
}

void NodeBase::unconfigureInputType(const GenICam::gcstring& pin)
{
    std::lock_guard guard(m_mutex);
    PinDescriptor* const input = findInput(pin);
    if (!input)
        throw INVALID_ARGUMENT_EXCEPTION("No input pin '%s'.", pin.c_str());
    input->configuredType = Utils::TypeInfo();
    onInputTypeUnconfigured(pin);
}

bool NodeBase::isConfigured(const GenICam::gcstring& pin) const
{
    std::lock_guard guard(m_mutex);
    const PinDescriptor* const input = findInput(pin);
    return input && input->configuredType.isValid();
}

void NodeBase::onInputTypeConfigured(const GenICam::gcstring&, const Utils::TypeInfo&) {}
void NodeBase::onInputTypeUnconfigured(const GenICam::gcstring&) {}
void NodeBase::onStarting(const NodeArgumentCollection&) {}
void NodeBase::onStopping() {}

void NodeBase::attachOutputSink(OutputSink sink)
{
    std::lock_guard guard(m_mutex);
    m_sink = std::move(sink);
}

void NodeBase::detachOutputSink()
{
    std::lock_guard guard(m_mutex);
    m_sink = nullptr;
}

bool NodeBase::isOutputSinkAttached() const
{
    std::lock_guard guard(m_mutex);
    return static_cast<bool>(m_sink);
}

bool NodeBase::deliver(const std::shared_ptr<IGraphUpdate>& update, const ValueMap& outputs)
{
    OutputSink sink;
    {
        std::lock_guard guard(m_mutex);
        sink = m_sink;
    }
    if (!sink)
        return false;
    sink(update, outputs);
    return true;
}

void NodeBase::start(const NodeArgumentCollection& arguments)
{
    {
        std::lock_guard guard(m_mutex);
        if (m_state == NodeState::Running)
            return;
        m_state = NodeState::Running;
    }
    try
    {
        onStarting(arguments);
    }
    catch (...)
    {
        // A node that could not start is stopped: stop() and cleanup() leave it alone.
        std::lock_guard guard(m_mutex);
        m_state = NodeState::Stopped;
        throw;
    }
}

void NodeBase::stop()
{
    {
        std::lock_guard guard(m_mutex);
        if (m_state == NodeState::Stopped)
            return;
        m_state = NodeState::Stopped;
    }
    onStopping();
}

NodeState NodeBase::getState() const
{
    std::lock_guard guard(m_mutex);
    return m_state;
}

void NodeBase::addError(std::shared_ptr<IError> error)
{
    std::lock_guard guard(m_mutex);
    m_errors.push_back(std::move(error));
}

bool NodeBase::hasError() const
{
    std::lock_guard guard(m_mutex);
    return !m_errors.empty();
}

std::vector<std::shared_ptr<IError>> NodeBase::getErrors() const
{
    std::lock_guard guard(m_mutex);
    return m_errors;
}

void NodeBase::cleanup()
{
    stop();
    detachOutputSink();
}

uint64_t NodeBase::getMaxInputJobCount() const
{
    return 1;
}

void NodeBase::abort(const std::shared_ptr<IGraphUpdate>&) {}

} // namespace Core
} // namespace Tarvik::DataProcessing
