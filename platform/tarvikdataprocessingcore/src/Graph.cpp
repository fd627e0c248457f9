#include <TarvikDataProcessingCore/core/GraphUpdate.h>
#include <TarvikDataProcessingCore/core/IJobQueue.h>
#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/graph/Graph.h>
#include <TarvikDataProcessingCore/utils/Log.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <set>

namespace Tarvik::DataProcessing::Core
{

struct Graph::Entry
{
    std::string name;
    std::shared_ptr<INode> node;
    NodeStatistics statistics;
    bool isSource = false;
};

// The deliveries of the nodes, from any thread, until the graph's thread runs them.
// It outlives the graph in nodes that keep their pool: it refers to no graph.
class Graph::JobQueue final : public IJobQueue
{
public:
    struct Job
    {
        const INode* node;
        std::shared_ptr<IGraphUpdate> update;
        ValueMap outputs;
    };

    bool createJob(INode& node, const std::shared_ptr<IGraphUpdate>& update, const ValueMap& values,
                   const std::function<void()>& function) override
    {
        if (function)
            function();
        push(node, update, values);
        return true;
    }

    bool waitUntilSpaceAvailable(INode&) override
    {
        std::unique_lock guard(m_mutex);
        m_changed.wait(guard, [&] { return !m_accepting || m_jobs.size() < deliveryQueueDepth; });
        return m_accepting;
    }

    void push(const INode& node, const std::shared_ptr<IGraphUpdate>& update, const ValueMap& values)
    {
        {
            std::lock_guard guard(m_mutex);
            m_jobs.push_back({&node, update, values});
        }
        m_changed.notify_all();
    }

    bool pop(Job& job)
    {
        {
            std::lock_guard guard(m_mutex);
            if (m_jobs.empty())
                return false;
            job = std::move(m_jobs.front());
            m_jobs.pop_front();
        }
        m_changed.notify_all();
        return true;
    }

    void setAccepting(bool accepting)
    {
        {
            std::lock_guard guard(m_mutex);
            m_accepting = accepting;
        }
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    bool m_accepting = false;
};

namespace
{

const PinDescriptor* findPin(const std::vector<PinDescriptor>& pins, const GenICam::gcstring& name)
{
    const auto it =
        std::find_if(pins.begin(), pins.end(), [&](const PinDescriptor& pin) { return pin.name == name; });
    return it == pins.end() ? nullptr : &*it;
}

const IValue* valueOf(const Utils::Variant& variant)
{
    return variant.isValid() ? variant.get<IValue>(false) : nullptr;
}

std::shared_ptr<IError> errorOf(const Utils::Variant& variant)
{
    const IValue* const value = valueOf(variant);
    return value && value->hasError(false) ? value->getError(false) : nullptr;
}

template <typename Value>
bool tryErrorValue(const Utils::TypeInfo& pinType, const std::shared_ptr<IError>& error, Utils::Variant& out)
{
    if (!Utils::TypeInfo::get<Value>(true).canConvert(pinType))
        return false;
    out = Utils::Variant(Value(error, std::make_shared<Threading::RecursiveMutex>()));
    return true;
}

// A value in error state that a pin of `pinType` can carry. A pin type that no
// framework value class fits (a data type of a package) gets an error string,
// which a typed reader downstream sees as a missing value.
Utils::Variant errorValue(const Utils::TypeInfo& pinType, const std::shared_ptr<IError>& error)
{
    Utils::Variant value;
    if (tryErrorValue<Image>(pinType, error, value) || tryErrorValue<Integer>(pinType, error, value) ||
        tryErrorValue<Float>(pinType, error, value) || tryErrorValue<Boolean>(pinType, error, value) ||
        tryErrorValue<String>(pinType, error, value))
        return value;
    return Utils::Variant(String(error, std::make_shared<Threading::RecursiveMutex>()));
}

std::string currentExceptionText()
{
    try
    {
        throw;
    }
    catch (const GenICam::GenericException& e)
    {
        return e.GetDescription();
    }
    catch (const std::exception& e)
    {
        return e.what();
    }
    catch (...)
    {
        return "Unknown exception occurred.";
    }
}

int graphCategory()
{
    static const int id = Utils::getCatId("tarvik.dataprocessing.core.Graph");
    return id;
}

} // namespace

Graph::Graph()
    : m_jobs(std::make_shared<JobQueue>())
    , m_resourcePool(std::make_shared<ResourcePool>(nullptr, nullptr, m_jobs))
{
}

Graph::~Graph()
{
    if (m_running)
        stop();
    for (Entry& entry : m_nodes)
        entry.node->detachOutputSink();
}

void Graph::addNode(const std::string& name, std::shared_ptr<INode> node)
{
    if (name.empty() || !node)
        throw INVALID_ARGUMENT_EXCEPTION("A node needs a name and an object.");
    if (std::any_of(m_nodes.begin(), m_nodes.end(), [&](const Entry& entry) { return entry.name == name; }))
        throw INVALID_ARGUMENT_EXCEPTION("The graph has a node '%s' already.", name.c_str());
    m_nodes.push_back({name, std::move(node), {}, false});
    m_built = false;
}

void Graph::connect(const PinRef& from, const PinRef& to)
{
    m_requestedEdges.emplace_back(from, to);
    m_built = false;
}

size_t Graph::indexOf(const std::string& name) const
{
    for (size_t i = 0; i < m_nodes.size(); ++i)
        if (m_nodes[i].name == name)
            return i;
    return m_nodes.size();
}

void Graph::build()
{
    if (m_running)
        throw INVALID_ARGUMENT_EXCEPTION("A running graph cannot be built.");
    m_edges.clear();
    for (const auto& [from, to] : m_requestedEdges)
    {
        const size_t fromIndex = indexOf(from.node);
        const size_t toIndex = indexOf(to.node);
        for (const auto& [pin, index] : {std::pair{&from, fromIndex}, std::pair{&to, toIndex}})
            if (index == m_nodes.size())
                throw INVALID_ARGUMENT_EXCEPTION("Edge %s -> %s: the graph has no node '%s'.",
                                                 from.text().c_str(), to.text().c_str(), pin->node.c_str());
        m_edges.push_back({fromIndex, from.pin.c_str(), toIndex, to.pin.c_str()});
    }
    sortNodes();

    // Configure in edge order, so that an output that takes its type from a
    // configured input has it before its own edges are checked.
    for (const size_t index : m_order)
        for (const Edge& edge : m_edges)
            if (edge.to == index)
                checkEdge(edge);

    for (size_t i = 0; i < m_nodes.size(); ++i)
    {
        m_nodes[i].isSource = m_nodes[i].node->getInputDescriptors().empty();
        INode& node = *m_nodes[i].node;
        node.attachOutputSink(
            [jobs = m_jobs, &node](const std::shared_ptr<IGraphUpdate>& update, const ValueMap& outputs)
            { jobs->push(node, update, outputs); });
    }
    m_built = true;
}

void Graph::checkEdge(const Edge& edge) const
{
    const Entry& from = m_nodes[edge.from];
    const Entry& to = m_nodes[edge.to];
    const std::string name =
        from.name + "." + edge.fromPin.c_str() + " -> " + to.name + "." + edge.toPin.c_str();
    const std::vector<PinDescriptor> outputs = from.node->getOutputDescriptors();
    const std::vector<PinDescriptor> inputs = to.node->getInputDescriptors();
    const PinDescriptor* const output = findPin(outputs, edge.fromPin);
    if (!output)
        throw INVALID_ARGUMENT_EXCEPTION("Edge %s: node '%s' has no output pin '%s'.", name.c_str(),
                                         from.name.c_str(), edge.fromPin.c_str());
    const PinDescriptor* const input = findPin(inputs, edge.toPin);
    if (!input)
        throw INVALID_ARGUMENT_EXCEPTION("Edge %s: node '%s' has no input pin '%s'.", name.c_str(),
                                         to.name.c_str(), edge.toPin.c_str());
    const Utils::TypeInfo outputType = output->type;
    if (input->configurable && to.node->canConfigure(edge.toPin, outputType))
    {
        to.node->configureInputType(edge.toPin, outputType);
        return;
    }
    if (!outputType.canConvert(input->type))
        throw INVALID_ARGUMENT_EXCEPTION(
            "Edge %s: output pin %s.%s gives '%s', which input pin %s.%s of type '%s' "
            "cannot take.",
            name.c_str(), from.name.c_str(), edge.fromPin.c_str(), outputType.getName().c_str(),
            to.name.c_str(), edge.toPin.c_str(), input->type.getName().c_str());
}

void Graph::sortNodes()
{
    // Kahn's algorithm, keeping the order of addition among independent nodes.
    std::vector<size_t> incoming(m_nodes.size(), 0);
    for (const Edge& edge : m_edges)
        ++incoming[edge.to];
    m_order.clear();
    std::vector<bool> placed(m_nodes.size(), false);
    while (m_order.size() < m_nodes.size())
    {
        size_t next = m_nodes.size();
        for (size_t i = 0; i < m_nodes.size() && next == m_nodes.size(); ++i)
            if (!placed[i] && incoming[i] == 0)
                next = i;
        if (next == m_nodes.size())
            throw INVALID_ARGUMENT_EXCEPTION("The edges form a cycle; a graph must flow one way.");
        placed[next] = true;
        m_order.push_back(next);
        for (const Edge& edge : m_edges)
            if (edge.from == next)
                --incoming[edge.to];
    }
}

void Graph::start(const NodeArgumentCollection& arguments)
{
    if (!m_built)
        build();
    if (m_running)
        return;
    m_jobs->setAccepting(true);
    for (auto it = m_order.rbegin(); it != m_order.rend(); ++it)
        m_nodes[*it].node->start(arguments);
    m_running = true;
}

void Graph::stop()
{
    if (!m_running)
        return;
    drain();
    // A node that waits for room must not block its own stop.
    m_jobs->setAccepting(false);
    for (const size_t index : m_order)
    {
        m_nodes[index].node->stop();
        drain();
    }
    m_running = false;
}

void Graph::drain()
{
    JobQueue::Job job;
    while (m_jobs->pop(job))
    {
        const auto entry =
            std::find_if(m_nodes.begin(), m_nodes.end(),
                         [&](const Entry& candidate) { return candidate.node.get() == job.node; });
        if (entry == m_nodes.end())
            continue;
        entry->statistics.recordDelivery();
        const auto index = static_cast<size_t>(entry - m_nodes.begin());
        propagate(job.update, {{index, std::move(job.outputs)}}, false);
    }
}

std::shared_ptr<IGraphUpdate> Graph::runUpdate()
{
    if (!m_built)
        build();
    auto update = std::make_shared<GraphUpdate>(std::vector<std::shared_ptr<IGraphUpdate>>{});
    propagate(update, {}, true);
    drain();
    return update;
}

void Graph::propagate(const std::shared_ptr<IGraphUpdate>& update, std::map<size_t, ValueMap> seeds,
                      bool runSources)
{
    std::map<size_t, ValueMap> pendingInputs;
    for (const size_t index : m_order)
    {
        if (const auto seed = seeds.find(index); seed != seeds.end())
        {
            distribute(index, seed->second, pendingInputs);
            continue;
        }
        const auto pending = pendingInputs.find(index);
        if (pending != pendingInputs.end())
        {
            ValueMap inputs = std::move(pending->second);
            pendingInputs.erase(pending);
            runNode(index, update, std::move(inputs), pendingInputs);
        }
        else if (runSources && m_nodes[index].isSource)
            runNode(index, update, {}, pendingInputs);
    }
}

void Graph::runNode(size_t index, const std::shared_ptr<IGraphUpdate>& update, ValueMap inputs,
                    std::map<size_t, ValueMap>& pendingInputs)
{
    Entry& entry = m_nodes[index];
    std::set<const IError*> inputErrors;
    for (const auto& [pin, value] : inputs)
        if (const std::shared_ptr<IError> error = errorOf(value))
            inputErrors.insert(error.get());
    for (const PinDescriptor& pin : entry.node->getInputDescriptors())
        if (pin.hasDefault && !inputs.count(pin.name) && !isConnectedInput(index, pin.name))
            inputs[pin.name] = pin.defaultValue;

    UpdateOutputs results;
    const auto started = std::chrono::steady_clock::now();
    try
    {
        results = entry.node->run(update, std::move(inputs));
    }
    catch (...)
    {
        const std::string text = currentExceptionText();
        Utils::createLogEntry(Utils::Severitiy_Error, graphCategory(), "Node '%s' failed to run: %s",
                              entry.name.c_str(), text.c_str());
        const auto error = std::make_shared<InvalidValueError>(text.c_str(), Utils::DateTime::now());
        ValueMap errors;
        for (const PinDescriptor& pin : entry.node->getOutputDescriptors())
            errors[pin.name] = errorValue(pin.type, error);
        results = {{update, std::move(errors)}};
    }
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - started;

    ValueMap outputs;
    for (auto& [resultUpdate, values] : results)
    {
        if (resultUpdate == update)
            outputs = std::move(values);
        else if (!values.empty())
            m_jobs->push(*entry.node, resultUpdate, values);
    }
    entry.statistics.recordRun(took.count(), !outputs.empty());
    std::set<const IError*> counted;
    for (const auto& [pin, value] : outputs)
        if (const std::shared_ptr<IError> error = errorOf(value))
            if (!inputErrors.count(error.get()) && counted.insert(error.get()).second)
                entry.statistics.recordError(error->getDescription().c_str());
    if (m_observer)
        m_observer(update, entry.name, outputs);
    distribute(index, outputs, pendingInputs);
}

bool Graph::isConnectedInput(size_t index, const GenICam::gcstring& pin) const
{
    return std::any_of(m_edges.begin(), m_edges.end(),
                       [&](const Edge& edge) { return edge.to == index && edge.toPin == pin; });
}

void Graph::distribute(size_t from, const ValueMap& outputs, std::map<size_t, ValueMap>& pendingInputs)
{
    for (const Edge& edge : m_edges)
    {
        if (edge.from != from)
            continue;
        const auto value = outputs.find(edge.fromPin);
        if (value != outputs.end())
            pendingInputs[edge.to][edge.toPin] = value->second;
    }
}

std::vector<std::string> Graph::nodeNames() const
{
    std::vector<std::string> names;
    for (const Entry& entry : m_nodes)
        names.push_back(entry.name);
    return names;
}

std::shared_ptr<INode> Graph::node(const std::string& name) const
{
    const size_t index = indexOf(name);
    return index == m_nodes.size() ? nullptr : m_nodes[index].node;
}

const NodeStatistics& Graph::statistics(const std::string& name) const
{
    const size_t index = indexOf(name);
    if (index == m_nodes.size())
        throw INVALID_ARGUMENT_EXCEPTION("The graph has no node '%s'.", name.c_str());
    return m_nodes[index].statistics;
}

std::shared_ptr<IGraphUpdate> Graph::rootOf(std::shared_ptr<IGraphUpdate> update)
{
    while (update && !update->getParents().empty())
        update = update->getParents().front();
    return update;
}

} // namespace Tarvik::DataProcessing::Core
