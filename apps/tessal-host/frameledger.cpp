#include "frameledger.h"

#include "displaysink.h"

#include <TarvikDataProcessingCore/core/IValue.h>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr size_t faultsInWords = 20;

enum class Outcome
{
    Missing,
    Value,
    Error,
};

Outcome outcomeOf(const Core::ValueMap& outputs, const char* pin)
{
    const auto found = outputs.find(pin);
    if (found == outputs.end() || !found->second.isValid())
        return Outcome::Missing;
    const Core::IValue* const value = found->second.get<Core::IValue>(false);
    if (!value)
        return Outcome::Missing;
    return value->hasError(false) ? Outcome::Error : Outcome::Value;
}

std::string equation(const char* what, uint64_t left, uint64_t right)
{
    return std::string(what) + ": " + std::to_string(left) + " != " + std::to_string(right);
}

} // namespace

FrameLedger::FrameLedger(Core::Graph& graph, const SyntheticCamera& source)
    : m_source(source)
{
    graph.setObserver([this](const std::shared_ptr<Core::IGraphUpdate>& update, const std::string& node,
                             const Core::ValueMap& outputs) { observe(update, node, outputs); });
    if (auto* const sink = dynamic_cast<DisplaySink*>(graph.node(display).get()))
        sink->setViewer([this](const std::shared_ptr<Core::IGraphUpdate>& update,
                               const DisplaySink::Image& image) { show(update, image->hasError(false)); });
}

void FrameLedger::fault(const std::string& text)
{
    if (m_tally.frameFaultCount++ < faultsInWords)
        m_tally.frameFaults.push_back(text);
}

void FrameLedger::observe(const std::shared_ptr<Core::IGraphUpdate>& update, const std::string& node,
                          const Core::ValueMap& outputs)
{
    using Kind = SyntheticCamera::FrameKind;
    if (node == camera)
    {
        const uint64_t frame = m_tally.framesIn++;
        m_currentKind = m_source.kindOf(frame);
        ++m_tally.framesByStatus[m_source.frameStatus(frame)];
    }
    else if (node == decompressor)
    {
        const uint64_t frame = m_tally.framesIn - 1;
        const Outcome outcome = outcomeOf(outputs, "Image");
        const bool damaged = m_currentKind == Kind::Truncated || m_currentKind == Kind::Corrupted;
        const bool intact = m_currentKind == Kind::Healthy || m_currentKind == Kind::Compressed;
        if (outcome == Outcome::Missing)
            fault("frame " + std::to_string(frame) + ": the Decompressor gave no image");
        else if (outcome == Outcome::Value && damaged)
            fault("frame " + std::to_string(frame) + " (" + m_source.frameStatus(frame) +
                  ") decoded as an image");
        else if (outcome == Outcome::Error && intact)
            fault("frame " + std::to_string(frame) + " (" + m_source.frameStatus(frame) + ") gave an error");
        ++(outcome == Outcome::Value ? m_tally.decoded : m_tally.decodeErrors);
    }
    else if (node == converter)
    {
        const Outcome outcome = outcomeOf(outputs, "ImageConverted");
        if (outcome == Outcome::Missing)
            fault("frame " + std::to_string(m_tally.framesIn - 1) +
                  ": the Converter gave no converted image");
        ++(outcome == Outcome::Value ? m_tally.converted : m_tally.convertErrors);
        if (outputs.count("Image"))
            ++m_tally.convertedInputs;
    }
    else if (node == gate)
    {
        if (outputs.empty())
            ++m_tally.stoppedByGate;
        else
        {
            ++m_tally.passedGate;
            m_awaitingDisplay.insert(Core::Graph::rootOf(update));
        }
    }
}

void FrameLedger::show(const std::shared_ptr<Core::IGraphUpdate>& update, bool hasError)
{
    ++m_tally.shown;
    if (hasError)
        ++m_tally.shownErrors;
    if (m_awaitingDisplay.erase(Core::Graph::rootOf(update)) == 0)
        fault("a frame reached the display twice, or without passing the Gate");
}

void FrameLedger::settle()
{
    m_tally.droppedByDecoupler += m_awaitingDisplay.size();
    m_awaitingDisplay.clear();
}

std::map<std::string, NodeCounts> nodeCountsOf(const Core::Graph& graph)
{
    std::map<std::string, NodeCounts> counts;
    for (const char* const name :
         {FrameLedger::camera, FrameLedger::decompressor, FrameLedger::converter, FrameLedger::histogram,
          FrameLedger::sharpness, FrameLedger::gate, FrameLedger::decoupler, FrameLedger::display})
    {
        const Core::NodeStatistics& statistics = graph.statistics(name);
        counts[name] = {statistics.framesIn(), statistics.framesOut(), statistics.errorCount()};
    }
    return counts;
}

std::vector<std::string> accountingFailures(const FrameTally& tally,
                                            const std::map<std::string, NodeCounts>& nodes)
{
    std::vector<std::string> failures;
    const auto expect = [&](const char* what, uint64_t left, uint64_t right)
    {
        if (left != right)
            failures.push_back(equation(what, left, right));
    };
    const auto node = [&](const char* name)
    {
        const auto found = nodes.find(name);
        return found == nodes.end() ? NodeCounts{} : found->second;
    };
    const NodeCounts decompressorCounts = node(FrameLedger::decompressor);
    const NodeCounts converterCounts = node(FrameLedger::converter);
    const NodeCounts gateCounts = node(FrameLedger::gate);
    const NodeCounts decouplerCounts = node(FrameLedger::decoupler);

    expect("camera runs = frames in", node(FrameLedger::camera).in, tally.framesIn);
    expect("Decompressor runs = frames in", decompressorCounts.in, tally.framesIn);
    expect("Decompressor images + errors = frames in", tally.decoded + tally.decodeErrors, tally.framesIn);
    expect("Decompressor errors raised = error values out", decompressorCounts.errors, tally.decodeErrors);
    expect("Converter runs = Decompressor outputs", converterCounts.in, decompressorCounts.out);
    expect("Converter images + errors = Converter runs", tally.converted + tally.convertErrors,
           converterCounts.in);
    expect("Converter error values = errors handed on + raised", tally.convertErrors,
           tally.decodeErrors + converterCounts.errors);
    expect("HistogramExtractor runs = Converter inputs handed on", node(FrameLedger::histogram).in,
           tally.convertedInputs);
    expect("SharpnessExtractor runs = Converter inputs handed on", node(FrameLedger::sharpness).in,
           tally.convertedInputs);
    expect("Gate runs = Converter outputs", gateCounts.in, converterCounts.out);
    expect("Gate stopped + passed = Gate runs", tally.stoppedByGate + tally.passedGate, gateCounts.in);
    expect("Gate outputs = frames passed", gateCounts.out, tally.passedGate);
    expect("Decoupler runs = frames passed", decouplerCounts.in, tally.passedGate);
    expect("Decoupler deliveries = frames shown", decouplerCounts.out, tally.shown);
    expect("display runs = frames shown", node(FrameLedger::display).in, tally.shown);
    expect("Decoupler drops = its runs - its deliveries", tally.droppedByDecoupler,
           decouplerCounts.in - decouplerCounts.out);
    expect("frames in = stopped by the Gate + dropped by the Decoupler + shown", tally.framesIn,
           tally.stoppedByGate + tally.droppedByDecoupler + tally.shown);
    if (tally.frameFaultCount != 0)
        failures.push_back(std::to_string(tally.frameFaultCount) +
                           " frames went astray, first: " + tally.frameFaults.front());
    return failures;
}
