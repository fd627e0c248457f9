// The graph runtime: nodes joined output pin to input pin by name, run once for
// each set of inputs on each graph update, in the order of their edges.
//
// Building checks every edge: both pins exist, and the output's type can be
// seen as the input's type. A configurable input is first configured to the
// type of the output that feeds it (onInputTypeConfigured), which may change
// the node's own outputs; nodes are therefore configured in edge order, sources
// first. A cycle is refused.
//
// An update starts at the source nodes, those that declare no input pins, and
// flows downstream: a node runs once on an update when at least one of its
// connected inputs received a value on it; its unconnected inputs that have a
// default get the default. Values are handed on as Variants, which share their
// objects: nothing of the pixels is copied. A run that throws gives each of the
// node's output pins a value in error state instead; a value that carries an
// error goes downstream like any other. Nothing stops the graph.
//
// Deliveries on updates of a node's own (a Decoupler's jobs) come through the job
// queue of resourcePool(), which the nodes of a graph are made with, or through
// the output sink of a node made with another pool. They are queued from any
// thread and run downstream on the graph's thread, by runUpdate() after its own
// pass, by drain(), and while stop() stops the nodes in edge order. A node that
// waits for space waits while deliveryQueueDepth jobs are queued, and is told
// not to deliver once the graph stops.
//
// Thread-safety: building, running, starting and stopping belong to one thread
// (the graph's); only the job queue is shared with the nodes' threads.
#pragma once

#include <TarvikDataProcessingCore/core/INode.h>
#include <TarvikDataProcessingCore/core/IResourcePool.h>
#include <TarvikDataProcessingCore/graph/NodeStatistics.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API Graph
{
public:
    // One pin of one node, as a graph file names it: "node.pin".
    struct PinRef
    {
        std::string node;
        std::string pin;
        std::string text() const { return node + "." + pin; }
    };

    // Told after each run of a node, with the update, the node's name and its
    // outputs on that update (an empty map when it gave nothing).
    using Observer =
        std::function<void(const std::shared_ptr<IGraphUpdate>&, const std::string&, const ValueMap&)>;

    // Deliveries that may wait in the queue before a delivering node blocks.
    static constexpr size_t deliveryQueueDepth = 4;

    Graph();
    ~Graph();
    Graph(const Graph&) = delete;
    Graph& operator=(const Graph&) = delete;

    // The pool to make this graph's nodes with: its job queue is the graph's.
    const std::shared_ptr<IResourcePool>& resourcePool() const { return m_resourcePool; }

    // Raises GenICam::InvalidArgumentException for an empty or repeated name or a null node.
    void addNode(const std::string& name, std::shared_ptr<INode> node);
    // Records an edge; build() checks it.
    void connect(const PinRef& from, const PinRef& to);
    // Checks and configures every edge as the class comment says. Raises
    // GenICam::InvalidArgumentException naming the edge and both pins.
    void build();

    // Starts every node (onStarting), sources last; stop() stops them in edge
    // order, the sources first, and runs what their stopping delivered.
    void start(const NodeArgumentCollection& arguments = {});
    void stop();
    bool isRunning() const { return m_running; }

    // One update from the sources down, then the deliveries that it caused.
    std::shared_ptr<IGraphUpdate> runUpdate();
    // Runs the deliveries that wait in the queue.
    void drain();

    void setObserver(Observer observer) { m_observer = std::move(observer); }

    std::vector<std::string> nodeNames() const;
    std::shared_ptr<INode> node(const std::string& name) const;
    const NodeStatistics& statistics(const std::string& name) const;

    // The update whose descendant `update` is and that has no parents: the one
    // runUpdate() started.
    static std::shared_ptr<IGraphUpdate> rootOf(std::shared_ptr<IGraphUpdate> update);

private:
    struct Entry;
    class JobQueue;
    struct Edge
    {
        size_t from;
        GenICam::gcstring fromPin;
        size_t to;
        GenICam::gcstring toPin;
    };
    size_t indexOf(const std::string& name) const;
    void checkEdge(const Edge& edge) const;
    void sortNodes();
    // Runs the nodes downstream of the seeded outputs on `update`.
    void propagate(const std::shared_ptr<IGraphUpdate>& update, std::map<size_t, ValueMap> seeds,
                   bool runSources);
    bool isConnectedInput(size_t index, const GenICam::gcstring& pin) const;
    void runNode(size_t index, const std::shared_ptr<IGraphUpdate>& update, ValueMap inputs,
                 std::map<size_t, ValueMap>& pendingInputs);
    void distribute(size_t from, const ValueMap& outputs, std::map<size_t, ValueMap>& pendingInputs);

    std::vector<Entry> m_nodes;
    std::vector<Edge> m_edges;
    std::vector<std::pair<PinRef, PinRef>> m_requestedEdges;
    // Node indices with every edge's source before its target.
    std::vector<size_t> m_order;
    bool m_built = false;
    bool m_running = false;
    Observer m_observer;
    std::shared_ptr<JobQueue> m_jobs;
    std::shared_ptr<IResourcePool> m_resourcePool;
};

} // namespace Tarvik::DataProcessing::Core
