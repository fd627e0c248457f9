// Watches a running graph and keeps what a person wants to see of the run: per
// frame the source's status, the sharpness, the histogram sums and the first
// error; the histograms of the last frame; the images that reach a display.
// Writes them, with the graph's per-node statistics, to the run's folder:
// frames/NNNNNN.png (every Nth display frame and the last), figures.csv,
// histogram-<channel>.csv, summary.json and report.html.
//
// Not thread-safe: everything runs on the graph's thread.
#pragma once

#include "displaysink.h"

#include <TarvikDataProcessingCore/graph/Graph.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

struct FrameFigures
{
    uint64_t frame = 0;
    std::string status;
    std::optional<double> sharpness;
    // Sum of the counts per histogram channel ("Red", "Green", "Blue", "Lum").
    std::map<std::string, uint64_t> histogramSums;
    std::string error;
};

class RunRecorder
{
public:
    // The status the source gives a frame ("ok", "compressed", "failed").
    using StatusOf = std::function<std::string(uint64_t frame)>;

    RunRecorder(std::filesystem::path folder, uint64_t pngEvery, StatusOf statusOf);

    // Becomes the graph's observer and the viewer of each of its displays.
    void attach(Tarvik::DataProcessing::Core::Graph& graph);

    const std::vector<FrameFigures>& frames() const { return m_frames; }
    const std::map<std::string, std::vector<uint64_t>>& lastHistograms() const { return m_lastHistograms; }
    const std::vector<std::string>& writtenImages() const { return m_writtenImages; }

    // Writes the last display frame and every file; `modules` names each node's module.
    void finish(const Tarvik::DataProcessing::Core::Graph& graph,
                const std::map<std::string, std::string>& modules, double seconds);

private:
    FrameFigures& figuresOf(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update);
    void observe(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
                 const Tarvik::DataProcessing::Core::ValueMap& outputs);
    void show(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
              const DisplaySink::Image& image);
    void writeImage(uint64_t frame, const DisplaySink::Image& image);

    std::filesystem::path m_folder;
    uint64_t m_pngEvery;
    StatusOf m_statusOf;
    std::vector<FrameFigures> m_frames;
    std::map<const Tarvik::DataProcessing::Core::IGraphUpdate*, uint64_t> m_frameOfRoot;
    std::vector<std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>> m_roots;
    std::map<std::string, std::vector<uint64_t>> m_lastHistograms;
    uint64_t m_lastHistogramFrame = 0;
    uint64_t m_displayed = 0;
    std::optional<std::pair<uint64_t, DisplaySink::Image>> m_lastShown;
    std::optional<uint64_t> m_lastWritten;
    std::vector<std::string> m_writtenImages;
};
