// The interface of a processing node, as the framework drives it.
#pragma once

#include <TarvikDataProcessingCore/core/Errors.h>
#include <TarvikDataProcessingCore/core/IGraphUpdate.h>
#include <TarvikDataProcessingCore/core/ISettings.h>
#include <TarvikDataProcessingCore/utils/IObject.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <GCBase/GCString.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API ISerializable
{
public:
    virtual ~ISerializable();
    virtual void load(const std::shared_ptr<Core::ISettings>& settings) = 0;
    virtual void save(const std::shared_ptr<Core::ISettings>& settings) = 0;
};

} // namespace Tarvik::DataProcessing::Utils

namespace Tarvik::DataProcessing::Core
{

using ValueMap = std::map<GenICam::gcstring, Utils::Variant>;
using UpdateOutputs = std::map<std::shared_ptr<IGraphUpdate>, ValueMap>;

// A declared pin.
struct PinDescriptor
{
    GenICam::gcstring name;
    GenICam::gcstring description;
    Utils::TypeInfo type;
    Utils::Variant defaultValue;
    bool hasDefault = false;
    bool configurable = false;
    bool flag = false;
    uint64_t limit = ~uint64_t{0};
    // The concrete type a configurable input was given; invalid while unconfigured.
    Utils::TypeInfo configuredType;
};

enum class NodeState
{
    Stopped,
    Running,
};

// Arguments the framework hands a node when the graph starts.
using NodeArgumentCollection = std::map<GenICam::gcstring, Utils::Variant>;

// Receives what a node delivers outside of run(), from its jobs.
using OutputSink = std::function<void(const std::shared_ptr<IGraphUpdate>&, const ValueMap&)>;

class TDPC_API INode : public Utils::IObject, public Utils::ISerializable
{
public:
    ~INode() override;

    virtual std::vector<PinDescriptor> getInputDescriptors() const = 0;
    virtual std::vector<PinDescriptor> getOutputDescriptors() const = 0;
    // Gives a configurable input a concrete type; raises GenICam::InvalidArgumentException
    // for an unknown or not configurable pin, or a type the pin cannot take.
    virtual void configureInputType(const GenICam::gcstring& pin, const Utils::TypeInfo& type) = 0;
    virtual void unconfigureInputType(const GenICam::gcstring& pin) = 0;
    virtual bool isConfigured(const GenICam::gcstring& pin) const = 0;
    virtual bool canConfigure(const GenICam::gcstring& pin, const Utils::TypeInfo& type) const = 0;

    virtual void attachOutputSink(OutputSink sink) = 0;
    virtual void detachOutputSink() = 0;
    virtual bool isOutputSinkAttached() const = 0;

    virtual void start(const NodeArgumentCollection& arguments) = 0;
    virtual void stop() = 0;
    virtual NodeState getState() const = 0;

    virtual bool hasError() const = 0;
    virtual std::vector<std::shared_ptr<IError>> getErrors() const = 0;

    virtual void cleanup() = 0;
    virtual uint64_t getMaxInputJobCount() const = 0;

    virtual UpdateOutputs run(const std::shared_ptr<IGraphUpdate>& update, ValueMap inputs) = 0;
    virtual void abort(const std::shared_ptr<IGraphUpdate>& update) = 0;
    virtual bool isSynchronous() const = 0;
};

} // namespace Tarvik::DataProcessing::Core
