// What became of each frame of the default graph, from what the graph tells its
// observer and what reaches the display, and the equations that account for
// every frame against the graph's own per-node statistics.
//
// A frame of the camera becomes one image value out of the Decompressor (good
// or in error state) and one "ImageConverted" out of the Converter. From there
// it ends in exactly one of three ways:
//
//   frames in = stopped by the Gate + dropped by the Decoupler + shown
//
// "Stopped by the Gate" are the Gate's runs without output; "shown" are the
// values, good or in error state, that reach the display; "dropped by the
// Decoupler" are the Decoupler's runs that never became a delivery (a value
// replaced in its slot, or dropped when it stopped), which the graph counts as
// its runs minus its deliveries. The ledger counts each term on its own, by the
// frame's root update, and checks them against the graph: a frame shown twice,
// or shown without passing the Gate, or lost between two nodes breaks one of the
// equations. Damaged frames (truncated, corrupted) must end as error values,
// and healthy or intact compressed ones as images: a damaged frame that decodes
// is a silent corruption, the worst outcome of all.
//
// Not thread-safe: whoever runs the graph calls it, one thread at a time.
#pragma once

#include "syntheticcamera.h"

#include <TarvikDataProcessingCore/graph/Graph.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

// What the ledger counted; every term of the equations but the graph's own.
struct FrameTally
{
    uint64_t framesIn = 0;
    // Frames by the camera's status ("ok", "compressed", "failed", "truncated", "corrupted").
    std::map<std::string, uint64_t> framesByStatus;
    uint64_t decoded = 0;
    uint64_t decodeErrors = 0;
    uint64_t converted = 0;
    uint64_t convertErrors = 0;
    // Frames for which the Converter handed its input on "Image", to the extractors.
    uint64_t convertedInputs = 0;
    uint64_t stoppedByGate = 0;
    uint64_t passedGate = 0;
    uint64_t shown = 0;
    uint64_t shownErrors = 0;
    uint64_t droppedByDecoupler = 0;
    // Faults of single frames, the first few in words, and how many there were.
    std::vector<std::string> frameFaults;
    uint64_t frameFaultCount = 0;
};

// The graph's figures of one node.
struct NodeCounts
{
    uint64_t in = 0;
    uint64_t out = 0;
    uint64_t errors = 0;
};

class FrameLedger
{
public:
    // The names of the default graph's nodes that the ledger follows.
    static constexpr const char* camera = "camera";
    static constexpr const char* decompressor = "decompressor";
    static constexpr const char* converter = "converter";
    static constexpr const char* histogram = "histogram";
    static constexpr const char* sharpness = "sharpness";
    static constexpr const char* gate = "gate";
    static constexpr const char* decoupler = "decoupler";
    static constexpr const char* display = "display";

    // Becomes the observer of `graph` and the viewer of its display; `source`
    // tells the status of each frame.
    FrameLedger(Tarvik::DataProcessing::Core::Graph& graph, const SyntheticCamera& source);

    // Call when the graph has stopped: what passed the Gate and was not shown
    // by now, the Decoupler dropped.
    void settle();

    const FrameTally& tally() const { return m_tally; }

private:
    void observe(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
                 const std::string& node, const Tarvik::DataProcessing::Core::ValueMap& outputs);
    void show(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update, bool hasError);
    void fault(const std::string& text);

    const SyntheticCamera& m_source;
    FrameTally m_tally;
    SyntheticCamera::FrameKind m_currentKind = SyntheticCamera::FrameKind::Healthy;
    // Frames that passed the Gate and have not been shown, by their root update,
    // held so that no other update can take their address.
    std::set<std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>> m_awaitingDisplay;
};

// The graph's figures of the nodes that the ledger follows.
std::map<std::string, NodeCounts> nodeCountsOf(const Tarvik::DataProcessing::Core::Graph& graph);

// Every equation that does not hold, in words; empty when each frame is
// accounted for. Holds only when the graph stands and the ledger is settled.
std::vector<std::string> accountingFailures(const FrameTally& tally,
                                            const std::map<std::string, NodeCounts>& nodes);
