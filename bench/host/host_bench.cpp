// The default graph per frame, and what of that time its nodes' runs take:
//   Graph/Default/1920x1200/BayerRG8/<allocator>   counters: nodes_us (the sum of
//   the nodes' runs, each timed alone by the runtime on the same frames) and
//   overhead_percent (the rest, the runtime's own share).
// The HistogramExtractor's run on 16-bit images, which builds 65,536 integer
// objects per pin, beside the same run under the other allocator:
//   HistogramRun/Mono16/1920x1200/<allocator>
#include "built_package.h"
#include "modulecatalog.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <benchmark/benchmark.h>

using namespace Tarvik::DataProcessing;

namespace
{

const PackageLoader& package()
{
    static const PackageLoader loader(builtPackagePath());
    return loader;
}

void defaultGraph(benchmark::State& state)
{
    const ModuleCatalog catalog(package());
    DefaultGraphOptions options;
    options.camera = {1920, 1200, Tarvik::PixelType_BayerRG8, 0.1, 0.05};
    Core::Graph graph;
    catalog.build(graph, catalog.defaultGraph(options));
    graph.start();
    for (auto _ : state)
        graph.runUpdate();
    graph.stop();
    double nodes = 0.0;
    for (const std::string& name : graph.nodeNames())
        nodes += graph.statistics(name).runTimeTotal();
    const double perFrame = nodes / static_cast<double>(state.iterations());
    state.counters["nodes_us"] = perFrame;
    state.counters["frame_us"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * 1e-6,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.SetLabel("overhead = frame_us - nodes_us");
}

void histogramRun(benchmark::State& state)
{
    const uint32_t width = 1920;
    const uint32_t height = 1200;
    const auto node = package().createNode("HistogramExtractor");
    std::vector<uint16_t> samples(size_t{width} * height);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<uint16_t>(i * 2654435761u >> 16);
    Utils::Variant image;
    image.setData(Utils::COWPtr<Core::IImage>(
        new Core::Image(samples.data(), samples.size() * 2, Tarvik::PixelType_Mono16, width, height, 0, 0,
                        std::make_shared<Core::AlignedBufferProvider>(), nullptr)));
    for (auto _ : state)
        benchmark::DoNotOptimize(node->run(nullptr, {{"Image", image}}));
}

} // namespace

BENCHMARK(defaultGraph)
    ->Name("Graph/Default/1920x1200/BayerRG8/" TESSAL_ALLOCATOR)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(histogramRun)
    ->Name("HistogramRun/Mono16/1920x1200/" TESSAL_ALLOCATOR)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
