#include "runrecorder.h"

#include "pngwriter.h"
#include "reporthtml.h"

#include <TarvikDataProcessingCore/core/IArray.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>

using namespace Tarvik::DataProcessing;

namespace
{

using Histogram = Core::IArrayT<Core::IInteger, void>;
const char* const histogramPins[] = {"Red", "Green", "Blue", "Lum"};

std::vector<uint64_t> countsOf(const Histogram& histogram)
{
    std::vector<uint64_t> counts(histogram.getSize());
    const Utils::COWPtr<Core::IInteger>* const elements = histogram.data();
    for (size_t i = 0; i < counts.size(); ++i)
        counts[i] = elements[i].isValid() ? static_cast<uint64_t>(elements[i]->getValue()) : 0;
    return counts;
}

void writeText(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
}

// A CSV field: quoted, with inner quotes doubled, when it holds a separator.
std::string csvField(const std::string& text)
{
    if (text.find_first_of(",\"\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

} // namespace

RunRecorder::RunRecorder(std::filesystem::path folder, uint64_t pngEvery, StatusOf statusOf)
    : m_folder(std::move(folder))
    , m_pngEvery(pngEvery == 0 ? 1 : pngEvery)
    , m_statusOf(std::move(statusOf))
{
    std::filesystem::create_directories(m_folder / "frames");
}

void RunRecorder::attach(Core::Graph& graph)
{
    graph.setObserver([this](const std::shared_ptr<Core::IGraphUpdate>& update, const std::string&,
                             const Core::ValueMap& outputs) { observe(update, outputs); });
    for (const std::string& name : graph.nodeNames())
        if (auto* const display = dynamic_cast<DisplaySink*>(graph.node(name).get()))
            display->setViewer([this](const std::shared_ptr<Core::IGraphUpdate>& update,
                                      const DisplaySink::Image& image) { show(update, image); });
}

FrameFigures& RunRecorder::figuresOf(const std::shared_ptr<Core::IGraphUpdate>& update)
{
    const std::shared_ptr<Core::IGraphUpdate> root = Core::Graph::rootOf(update);
    const auto known = m_frameOfRoot.find(root.get());
    if (known != m_frameOfRoot.end())
        return m_frames[known->second];
    const uint64_t frame = m_frames.size();
    m_frameOfRoot[root.get()] = frame;
    m_roots.push_back(root);
    m_frames.push_back({frame, m_statusOf ? m_statusOf(frame) : "ok", {}, {}, {}});
    return m_frames.back();
}

void RunRecorder::observe(const std::shared_ptr<Core::IGraphUpdate>& update, const Core::ValueMap& outputs)
{
    FrameFigures& figures = figuresOf(update);
    for (const auto& [pin, value] : outputs)
    {
        const Core::IValue* const object = value.isValid() ? value.get<Core::IValue>(false) : nullptr;
        if (!object)
            continue;
        if (object->hasError(false))
        {
            if (figures.error.empty())
                figures.error = object->getError(false)->getDescription().c_str();
            continue;
        }
        if (pin == "Sharpness")
            if (const auto* const sharpness = value.get<Core::IFloat>(false))
                figures.sharpness = sharpness->getValue();
        for (const char* const channel : histogramPins)
            if (pin == channel)
                if (const auto* const histogram = value.get<Histogram>(false))
                {
                    std::vector<uint64_t> counts = countsOf(*histogram);
                    uint64_t sum = 0;
                    for (const uint64_t count : counts)
                        sum += count;
                    figures.histogramSums[channel] = sum;
                    if (figures.frame != m_lastHistogramFrame)
                        m_lastHistograms.clear();
                    m_lastHistogramFrame = figures.frame;
                    m_lastHistograms[channel] = std::move(counts);
                }
    }
}

void RunRecorder::show(const std::shared_ptr<Core::IGraphUpdate>& update, const DisplaySink::Image& image)
{
    const uint64_t frame = figuresOf(update).frame;
    if (m_displayed++ % m_pngEvery == 0)
        writeImage(frame, image);
    m_lastShown = {frame, image};
}

void RunRecorder::writeImage(uint64_t frame, const DisplaySink::Image& image)
{
    if (!canWritePng(image->getPixelType()) || image->hasError(false))
        return;
    char name[32];
    std::snprintf(name, sizeof name, "frames/%06llu.png", static_cast<unsigned long long>(frame));
    writePng(*image, (m_folder / name).string());
    m_writtenImages.push_back(name);
    m_lastWritten = frame;
}

void RunRecorder::finish(const Core::Graph& graph, const std::map<std::string, std::string>& modules,
                         double seconds)
{
    if (m_lastShown && m_lastWritten != m_lastShown->first)
        writeImage(m_lastShown->first, m_lastShown->second);

    std::string csv = "frame,status,sharpness,red,green,blue,lum,error\n";
    for (const FrameFigures& figures : m_frames)
    {
        csv += std::to_string(figures.frame) + "," + figures.status + ",";
        if (figures.sharpness)
        {
            char number[32];
            std::snprintf(number, sizeof number, "%.6g", *figures.sharpness);
            csv += number;
        }
        for (const char* const channel : histogramPins)
        {
            const auto sum = figures.histogramSums.find(channel);
            csv += "," + (sum == figures.histogramSums.end() ? std::string() : std::to_string(sum->second));
        }
        csv += "," + csvField(figures.error) + "\n";
    }
    writeText(m_folder / "figures.csv", csv);

    for (const auto& [channel, counts] : m_lastHistograms)
    {
        std::string text = "value,count\n";
        for (size_t i = 0; i < counts.size(); ++i)
            text += std::to_string(i) + "," + std::to_string(counts[i]) + "\n";
        writeText(m_folder / ("histogram-" + channel + ".csv"), text);
    }

    nlohmann::ordered_json summary = {{"frames", m_frames.size()}, {"seconds", seconds}};
    summary["nodes"] = nlohmann::ordered_json::array();
    for (const std::string& name : graph.nodeNames())
    {
        const Core::NodeStatistics& statistics = graph.statistics(name);
        const auto module = modules.find(name);
        summary["nodes"].push_back({{"name", name},
                                    {"module", module == modules.end() ? "" : module->second},
                                    {"framesIn", statistics.framesIn()},
                                    {"framesOut", statistics.framesOut()},
                                    {"errors", statistics.errors()},
                                    {"runMicrosecondsMedian", statistics.runTimeMedian()},
                                    {"runMicroseconds99", statistics.runTimePercentile(99.0)}});
    }
    writeText(m_folder / "summary.json", summary.dump(2) + "\n");
    writeText(m_folder / "report.html",
              reportHtml(m_frames, m_lastHistograms, m_writtenImages, summary.dump()));
}
