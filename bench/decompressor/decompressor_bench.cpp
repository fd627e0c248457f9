// The Decompressor's three roads, each beside the limit it must keep:
//   Decompress/Mono12/4096x3000/{tessal,zstd}: CImageDecompressor on a whole
//     frame (checks, checksum, chunks, row delta undone) beside a bare zstd
//     decompression of the same body into the same target; goal: tessal at
//     least 80% of zstd's throughput.
//   Run/Compressed/Mono12/4096x3000/tessal: the node's whole run on that frame,
//     with the new image from the pool.
//   Healthy/Mono8/{640x480,4096x3000}/tessal: the node adopting a healthy frame;
//     goal: the same cost at both sizes, no pixel touched.
//   Repair/Mono8/4096x3000/{tessal,memcpy}: the node repairing a failed frame
//     beside a memcpy of its payload; goal: within 1.5 times the memcpy.
// The frames are camera-like: a slow gradient with a little noise, from a fixed seed.
#include "built_package.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikUtility/ImageCompressor.h>
#include <TarvikUtility/ImageDecompressor.h>
#include <TarvikViewerDataTypes2/CompressionDescriptor.h>
#include <TarvikViewerDataTypes2/GrabResult.h>

#include <benchmark/benchmark.h>
#include <zstd.h>

#include <cstring>
#include <random>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr uint32_t width = 4096;
constexpr uint32_t height = 3000;
// The frame header's size: the body follows it.
constexpr size_t frameHeaderSize = 56;

// Samples of `depth` bits in bytes or little-endian words.
std::vector<uint8_t> cameraImage(uint32_t imageWidth, uint32_t imageHeight, uint32_t depth)
{
    const size_t sampleBytes = depth > 8 ? 2 : 1;
    std::vector<uint8_t> bytes(size_t{imageWidth} * imageHeight * sampleBytes);
    std::mt19937 random(11);
    const uint32_t maximum = (1u << depth) - 1;
    for (uint32_t y = 0; y < imageHeight; ++y)
        for (uint32_t x = 0; x < imageWidth; ++x)
        {
            const uint32_t value =
                std::min<uint32_t>(maximum, (x + y) * maximum / (imageWidth + imageHeight) + random() % 8);
            const size_t at = (size_t{y} * imageWidth + x) * sampleBytes;
            bytes[at] = static_cast<uint8_t>(value);
            if (sampleBytes == 2)
                bytes[at + 1] = static_cast<uint8_t>(value >> 8);
        }
    return bytes;
}

std::shared_ptr<Core::IBuffer> bufferOf(const std::vector<uint8_t>& bytes)
{
    auto buffer = Core::AlignedBufferProvider().allocate(bytes.size());
    std::memcpy(buffer->getData(), bytes.data(), bytes.size());
    return buffer;
}

struct CompressedMono12
{
    std::vector<uint8_t> image = cameraImage(width, height, 12);
    Tarvik::CImageCompressor compressor;
    std::vector<uint8_t> frame =
        compressor.CompressImage(image.data(), image.size(), Tarvik::PixelType_Mono12, width, height, 0);
    std::vector<uint8_t> descriptor = compressor.GetCompressionDescriptor();
};

const CompressedMono12& compressedMono12()
{
    static const CompressedMono12 data;
    return data;
}

struct TestUpdate : Core::IGraphUpdate
{
    uint64_t getId() const override { return 1; }
    const std::vector<std::shared_ptr<IGraphUpdate>>& getParents() const override { return parents; }
    std::vector<std::shared_ptr<IGraphUpdate>> parents;
};

// The node through the package, run until the benchmark ends; any error stops the run.
void runNode(benchmark::State& state, const Core::ValueMap& inputs, bool fixImages)
{
    static PackageLoader package{builtPackagePath()};
    const std::shared_ptr<Core::INode> node = package.createNode("Decompressor");
    auto settings = std::make_shared<Core::MemorySettings>();
    settings->setBool("FixImage", fixImages);
    node->load(settings);
    const std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<TestUpdate>();
    for (auto _ : state)
    {
        auto outputs = node->run(update, inputs);
        const auto image = outputs.at(update).at("Image").get<Utils::COWPtr<Core::IImage>>(true);
        if (image->hasError(false))
        {
            state.SkipWithError(image->getError(false)->getDescription().c_str());
            break;
        }
        benchmark::DoNotOptimize(image.get());
    }
}

void DecompressTessal(benchmark::State& state)
{
    const CompressedMono12& data = compressedMono12();
    Tarvik::CImageDecompressor decompressor(data.descriptor.data(), data.descriptor.size());
    std::vector<uint8_t> target(data.image.size());
    for (auto _ : state)
    {
        size_t size = target.size();
        decompressor.DecompressImage(target.data(), size, data.frame.data(), data.frame.size());
        benchmark::DoNotOptimize(target.data());
    }
    if (target != data.image)
        state.SkipWithError("not bit-exact");
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(target.size()));
    state.counters["ratio"] = static_cast<double>(data.image.size()) / static_cast<double>(data.frame.size());
}

void DecompressZstd(benchmark::State& state)
{
    const CompressedMono12& data = compressedMono12();
    ZSTD_DCtx* const context = ZSTD_createDCtx();
    std::vector<uint8_t> target(data.image.size());
    for (auto _ : state)
    {
        const size_t written =
            ZSTD_decompressDCtx(context, target.data(), target.size(), data.frame.data() + frameHeaderSize,
                                data.frame.size() - frameHeaderSize);
        if (written != target.size())
        {
            state.SkipWithError("zstd failed");
            break;
        }
        benchmark::DoNotOptimize(target.data());
    }
    ZSTD_freeDCtx(context);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(target.size()));
}

void RunCompressed(benchmark::State& state)
{
    const CompressedMono12& data = compressedMono12();
    const GrabResultDescription description{true, Tarvik::PixelType_Mono12, width, height,
                                            0,    data.frame.size()};
    runNode(state,
            {{"GrabResult", Utils::Variant(GrabResult(description, bufferOf(data.frame)))},
             {"CompressionDescriptor", Utils::Variant(CompressionDescriptor(data.descriptor))}},
            false);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(data.image.size()));
}

void Healthy(benchmark::State& state, uint32_t imageWidth, uint32_t imageHeight)
{
    const std::vector<uint8_t> image = cameraImage(imageWidth, imageHeight, 8);
    const GrabResultDescription description{true,        Tarvik::PixelType_Mono8, imageWidth, imageHeight, 0,
                                            image.size()};
    runNode(state, {{"GrabResult", Utils::Variant(GrabResult(description, bufferOf(image)))}}, false);
}

const std::vector<uint8_t>& mono8Frame()
{
    static const std::vector<uint8_t> image = cameraImage(width, height, 8);
    return image;
}

void RepairTessal(benchmark::State& state)
{
    const std::vector<uint8_t>& image = mono8Frame();
    const GrabResultDescription description{false, Tarvik::PixelType_Mono8, width, height, 0, 0};
    runNode(state,
            {{"GrabResult", Utils::Variant(GrabResult(description, bufferOf(image)))},
             {"RepairHintPayloadSizeCamera",
              Utils::Variant(Core::Integer(static_cast<int64_t>(image.size()), nullptr))}},
            true);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(image.size()));
}

void RepairMemcpy(benchmark::State& state)
{
    const std::shared_ptr<Core::IBuffer> source = bufferOf(mono8Frame());
    const std::shared_ptr<Core::IBuffer> target = Core::AlignedBufferProvider().allocate(source->getSize());
    for (auto _ : state)
    {
        std::memcpy(target->getData(), source->getData(), source->getSize());
        benchmark::DoNotOptimize(target->getData());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(source->getSize()));
}

BENCHMARK(DecompressTessal)->Name("Decompress/Mono12/4096x3000/tessal")->Unit(benchmark::kMillisecond);
BENCHMARK(DecompressZstd)->Name("Decompress/Mono12/4096x3000/zstd")->Unit(benchmark::kMillisecond);
BENCHMARK(RunCompressed)->Name("Run/Compressed/Mono12/4096x3000/tessal")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Healthy, small, 640, 480)
    ->Name("Healthy/Mono8/640x480/tessal")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Healthy, large, 4096, 3000)
    ->Name("Healthy/Mono8/4096x3000/tessal")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(RepairTessal)->Name("Repair/Mono8/4096x3000/tessal")->Unit(benchmark::kMillisecond);
BENCHMARK(RepairMemcpy)->Name("Repair/Mono8/4096x3000/memcpy")->Unit(benchmark::kMillisecond);

} // namespace
