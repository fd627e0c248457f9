// The framework's base of every node: pins, the node's lock, state, errors and
// the sink that receives deliveries outside of run().
//
// Thread-safe: the pin tables, state and sink are guarded by an internal
// recursive mutex, so a node's overrides may declare pins from within the
// configuration callbacks. The node's own lock (setLock) is the node's business.
#pragma once

#include <TarvikDataProcessingCore/core/INode.h>
#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>

#include <mutex>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API NodeBase : public INode
{
public:
    NodeBase();
    ~NodeBase() override;
    NodeBase(const NodeBase&) = delete;
    NodeBase& operator=(const NodeBase&) = delete;

    std::shared_ptr<Threading::IRecursiveLockable> getLock() const;

    std::vector<PinDescriptor> getInputDescriptors() const override;
    std::vector<PinDescriptor> getOutputDescriptors() const override;
    void configureInputType(const GenICam::gcstring& pin, const Utils::TypeInfo& type) override;
    void unconfigureInputType(const GenICam::gcstring& pin) override;
    bool isConfigured(const GenICam::gcstring& pin) const override;
    bool canConfigure(const GenICam::gcstring& pin, const Utils::TypeInfo& type) const override;

    void attachOutputSink(OutputSink sink) override;
    void detachOutputSink() override;
    bool isOutputSinkAttached() const override;

    void start(const NodeArgumentCollection& arguments) override;
    void stop() override;
    NodeState getState() const override;

    bool hasError() const override;
    std::vector<std::shared_ptr<IError>> getErrors() const override;

    // Stops a running node and lets go of the sink; the first step of every node's destructor.
    void cleanup() override;
    uint64_t getMaxInputJobCount() const override;
    void abort(const std::shared_ptr<IGraphUpdate>& update) override;

protected:
    void setLock(std::shared_ptr<Threading::IRecursiveLockable> lock);

    // Declare pins; a second pin of one name in one direction raises
    // GenICam::InvalidArgumentException.
    void createInput(const GenICam::gcstring& name, const GenICam::gcstring& description,
                     const Utils::TypeInfo& type, bool flag, uint64_t limit);
    void createInput(const GenICam::gcstring& name, const GenICam::gcstring& description,
                     const Utils::TypeInfo& type, const Utils::Variant& defaultValue, bool configurable,
                     bool flag, uint64_t limit);
    void createOutput(const GenICam::gcstring& name, const GenICam::gcstring& description,
                      const Utils::TypeInfo& type, bool flag, uint64_t limit);
    // Unknown names do nothing.
    void removeInput(const GenICam::gcstring& name);
    void removeOutput(const GenICam::gcstring& name);

    virtual void onInputTypeConfigured(const GenICam::gcstring& pin, const Utils::TypeInfo& type);
    virtual void onInputTypeUnconfigured(const GenICam::gcstring& pin);
    virtual void onStarting(const NodeArgumentCollection& arguments);
    virtual void onStopping();

    // Records an error that the node reports through hasError() and getErrors().
    void addError(std::shared_ptr<IError> error);

    // Hands `outputs` of `update` to the attached sink; false when there is none.
    bool deliver(const std::shared_ptr<IGraphUpdate>& update, const ValueMap& outputs);

private:
    void addPin(std::vector<PinDescriptor>& pins, const char* direction, PinDescriptor pin);
    PinDescriptor* findInput(const GenICam::gcstring& name);
    const PinDescriptor* findInput(const GenICam::gcstring& name) const;

    mutable std::recursive_mutex m_mutex;
    std::shared_ptr<Threading::IRecursiveLockable> m_lock;
    std::vector<PinDescriptor> m_inputs;
    std::vector<PinDescriptor> m_outputs;
    OutputSink m_sink;
    NodeState m_state = NodeState::Stopped;
    std::vector<std::shared_ptr<IError>> m_errors;
};

} // namespace Tarvik::DataProcessing::Core
