// Aravis' fake camera at its largest size (the sensor's 2048x2048, Mono8), as
// fast as it renders frames, taken by the host's Aravis source:
//   Aravis/NullSink/2048x2048     the source alone, its outputs dropped
//   Aravis/DefaultGraph/2048x2048 the same stream through the default graph
// Counters: fps, and for the default graph fps_of_null_sink, its share of the
// null sink's rate measured just before in the same process.
#include "built_package.h"
#include "modulecatalog.h"
#include "packageloader.h"

#include <benchmark/benchmark.h>

#include <chrono>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr uint32_t sensorWidth = 2048;
constexpr uint32_t sensorHeight = 2048;

double nullSinkFps = 0.0;

const PackageLoader& package()
{
    static const PackageLoader loader(builtPackagePath());
    return loader;
}

DefaultGraphOptions onFakeCamera()
{
    DefaultGraphOptions options;
    options.camera.width = sensorWidth;
    options.camera.height = sensorHeight;
    // The fake camera's shortest frame period (1 ms) and exposure (10 us): its
    // rendering limits the rate.
    options.aravis = {{"Camera", "Fake_1"},
                      {"Width", sensorWidth},
                      {"Height", sensorHeight},
                      {"PixelFormat", "Mono8"},
                      {"Features", {{"AcquisitionFrameRate", 1000.0}, {"ExposureTimeAbs", 10.0}}}};
    return options;
}

// Frames per second of the timed loop.
double runFrames(benchmark::State& state, const GraphDescription& description)
{
    const ModuleCatalog catalog(package());
    Core::Graph graph;
    catalog.build(graph, description);
    graph.start();
    graph.runUpdate(); // the acquisition starts with the first frame
    const auto started = std::chrono::steady_clock::now();
    for (auto _ : state)
        graph.runUpdate();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    graph.stop();
    for (const std::string& name : graph.nodeNames())
        if (graph.statistics(name).errorCount() != 0)
            state.SkipWithError(("node " + name + " reported errors").c_str());
    const double fps = static_cast<double>(state.iterations()) / seconds;
    state.counters["fps"] = fps;
    return fps;
}

void nullSink(benchmark::State& state)
{
    const ModuleCatalog catalog(package());
    GraphDescription camera = catalog.defaultGraph(onFakeCamera());
    camera.nodes.resize(1);
    camera.edges.clear();
    nullSinkFps = runFrames(state, camera);
}

void defaultGraph(benchmark::State& state)
{
    const ModuleCatalog catalog(package());
    const double fps = runFrames(state, catalog.defaultGraph(onFakeCamera()));
    if (nullSinkFps > 0.0)
        state.counters["fps_of_null_sink"] = fps / nullSinkFps;
}

} // namespace

BENCHMARK(nullSink)
    ->Name("Aravis/NullSink/2048x2048")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2.0)
    ->UseRealTime();
BENCHMARK(defaultGraph)
    ->Name("Aravis/DefaultGraph/2048x2048")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2.0)
    ->UseRealTime();
