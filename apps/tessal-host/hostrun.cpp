#include "hostrun.h"

#include "aravissource.h"
#include "runrecorder.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <unistd.h>

using namespace Tarvik::DataProcessing;

namespace
{

using Clock = std::chrono::steady_clock;

// The progress line: shown on a terminal once a run has lasted a second.
class Progress
{
public:
    Progress(uint64_t total, bool quiet)
        : m_total(total)
        , m_enabled(!quiet && isatty(STDERR_FILENO))
    {
    }

    void frameDone(uint64_t done)
    {
        if (!m_enabled)
            return;
        const auto now = Clock::now();
        const double elapsed = std::chrono::duration<double>(now - m_start).count();
        if (elapsed < 1.0 || now - m_lastShown < std::chrono::milliseconds(100))
            return;
        m_lastShown = now;
        m_shown = true;
        std::fprintf(stderr, "\r  frame %llu/%llu  %.1f frames/s ", static_cast<unsigned long long>(done),
                     static_cast<unsigned long long>(m_total), static_cast<double>(done) / elapsed);
    }

    ~Progress()
    {
        if (m_shown)
            std::fprintf(stderr, "\n");
    }

private:
    uint64_t m_total;
    bool m_enabled;
    bool m_shown = false;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_lastShown{};
};

void printSummary(const Core::Graph& graph, const std::map<std::string, std::string>& modules)
{
    std::printf("%-12s %-20s %8s %8s %7s %12s %12s\n", "node", "module", "in", "out", "errors", "median us",
                "p99 us");
    for (const std::string& name : graph.nodeNames())
    {
        const Core::NodeStatistics& s = graph.statistics(name);
        std::printf(
            "%-12s %-20s %8llu %8llu %7llu %12.1f %12.1f\n", name.c_str(), modules.at(name).c_str(),
            static_cast<unsigned long long>(s.framesIn()), static_cast<unsigned long long>(s.framesOut()),
            static_cast<unsigned long long>(s.errorCount()), s.runTimeMedian(), s.runTimePercentile(99.0));
        for (const auto& [text, count] : s.errors())
            std::printf("    %llu x %s\n", static_cast<unsigned long long>(count), text.c_str());
    }
}

} // namespace

std::filesystem::path defaultOutputFolder(const std::string& command)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y%m%d-%H%M%S", &local);
    return std::filesystem::path("tessal-runs") / (command + "-" + stamp);
}

int runGraph(const ModuleCatalog& catalog, const GraphDescription& description, const RunOptions& options)
{
    Core::Graph graph;
    catalog.build(graph, description);
    std::map<std::string, std::string> modules;
    const SyntheticCamera* camera = nullptr;
    std::vector<const AravisSource*> aravisCameras;
    for (const GraphDescription::Node& node : description.nodes)
    {
        modules[node.name] = node.module;
        if (const auto* const found = dynamic_cast<const SyntheticCamera*>(graph.node(node.name).get()))
            camera = found;
        if (const auto* const found = dynamic_cast<const AravisSource*>(graph.node(node.name).get()))
            aravisCameras.push_back(found);
    }
    const auto lostCamera = [&]() -> std::string
    {
        for (const AravisSource* const aravis : aravisCameras)
            if (!aravis->lostReason().empty())
                return aravis->lostReason();
        return "";
    };
    std::string lost;
    uint64_t ran = 0;
    RunRecorder recorder(options.outputFolder, options.pngEvery,
                         [camera](uint64_t frame) { return camera ? camera->frameStatus(frame) : "ok"; });
    recorder.attach(graph);

    const auto started = Clock::now();
    {
        Progress progress(options.frames, options.quiet);
        graph.start();
        for (; ran < options.frames && lost.empty(); ++ran)
        {
            graph.runUpdate();
            progress.frameDone(ran + 1);
            lost = lostCamera();
        }
        graph.stop();
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - started).count();
    recorder.finish(graph, modules, seconds);

    uint64_t errors = 0;
    for (const std::string& name : graph.nodeNames())
        errors += graph.statistics(name).errorCount();
    if (!options.quiet)
    {
        std::printf("%llu frames in %.1f s (%.1f frames/s)\n", static_cast<unsigned long long>(ran), seconds,
                    static_cast<double>(ran) / seconds);
        printSummary(graph, modules);
        std::printf("Outputs in %s: open %s in a browser\n", options.outputFolder.string().c_str(),
                    (options.outputFolder / "report.html").string().c_str());
    }
    if (!lost.empty())
    {
        std::fprintf(stderr, "tessal-host: %s; the run ended after %llu of %llu frames\n", lost.c_str(),
                     static_cast<unsigned long long>(ran), static_cast<unsigned long long>(options.frames));
        return exitSourceLost;
    }
    return errors == 0 ? exitDone : exitFailed;
}
