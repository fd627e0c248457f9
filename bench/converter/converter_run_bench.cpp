// The Converter node's whole run on camera formats, single-threaded, beside a
// memcpy of the output it makes (Mono8 for mono, BGRA8 for Bayer):
//   Run/Converter/<Format>/<width>x<height>/{tessal,memcpy}
// The node's run checks the input, allocates the output from the buffer
// provider and converts; the conversion is most of it.
#include "node_run_support.h"

#include <TarvikBase/PixelType.h>
#include <TarvikBase/PixelTypeMapper.h>
#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace Tarvik::DataProcessing;
using NodeRunSupport::NullUpdate;
using NodeRunSupport::package;

namespace
{

struct Format
{
    const char* name;
    Tarvik::EPixelType type;
    Tarvik::EPixelType output;
};

const Format kFormats[] = {
    {"Mono12p", Tarvik::PixelType_Mono12p, Tarvik::PixelType_Mono8},
    {"BayerRG12p", Tarvik::PixelType_BayerRG12p, Tarvik::PixelType_BGRa8},
};

struct Size
{
    uint32_t width;
    uint32_t height;
};

const Size kSizes[] = {{1920, 1200}, {4096, 3000}};

// Random bytes from a fixed seed: every packed sample is a valid one.
Utils::COWPtr<Core::IImage> randomImage(Tarvik::EPixelType type, const Size& size)
{
    std::vector<uint8_t> bytes(Tarvik::ComputeBufferSize(type, size.width, size.height, 0));
    std::mt19937 random(11);
    for (auto& byte : bytes)
        byte = static_cast<uint8_t>(random());
    return Utils::COWPtr<Core::IImage>(
        new Core::Image(bytes.data(), bytes.size(), type, size.width, size.height, 0, 0,
                        std::make_shared<Core::AlignedBufferProvider>(), nullptr));
}

void runNode(benchmark::State& state, const Format& format, const Size& size)
{
    const std::shared_ptr<Core::INode> node = package().createNode("Converter");
    const auto update = std::make_shared<NullUpdate>();
    Utils::Variant input;
    input.setData(randomImage(format.type, size));
    for (auto _ : state)
    {
        Core::UpdateOutputs outputs = node->run(update, {{"Image", input}});
        benchmark::DoNotOptimize(outputs);
    }
    state.SetBytesProcessed(
        static_cast<int64_t>(state.iterations()) *
        static_cast<int64_t>(Tarvik::ComputeBufferSize(format.output, size.width, size.height, 0)));
}

void runMemcpy(benchmark::State& state, const Format& format, const Size& size)
{
    const size_t bytes = Tarvik::ComputeBufferSize(format.output, size.width, size.height, 0);
    std::vector<uint8_t> from(bytes, 1);
    std::vector<uint8_t> to(bytes);
    for (auto _ : state)
    {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

const bool kRegistered = []
{
    for (const Format& format : kFormats)
    {
        for (const Size& size : kSizes)
        {
            const std::string prefix = std::string("Run/Converter/") + format.name + "/" +
                                       std::to_string(size.width) + "x" + std::to_string(size.height) + "/";
            benchmark::RegisterBenchmark((prefix + "tessal").c_str(), runNode, format, size)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark((prefix + "memcpy").c_str(), runMemcpy, format, size)
                ->Unit(benchmark::kMillisecond);
        }
    }
    return true;
}();

} // namespace
