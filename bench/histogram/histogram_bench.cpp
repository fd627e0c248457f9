// Histograms of one 4096 x 3000 frame, single-threaded, on a random scene and on
// a smooth one like a camera's (neighbours nearly equal), each beside its peers:
//   Histogram/<Format>/4096x3000/<scene>/{tessal,opencv,plainloop,fourloops}
//     tessal: the node's sampler; opencv: cv::calcHist into as many bins;
//     plainloop: one counter table; fourloops: four tables added at the end
//     (8-bit only).
//   Histogram/BayerRG8/4096x3000/<scene>/{tessal,mono8}: the Bayer sampler beside
//     the mono sampler on the same bytes.
//   Run/<Format>/4096x3000/smooth/{tessal,sampling}: the node's whole run through
//     the package (check, count, build one Integer per bin) beside its sampler alone;
//     Mono12p (unpacked by the converter first) beside Mono12's run.
#include "node_run_support.h"
#include "sampling_access.h"

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/IArray.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace Tarvik::DataProcessing;
using NodeRunSupport::NullUpdate;
using NodeRunSupport::package;
using Sampling = TarvikViewerTessalPackage::HistogramSamplingAccess;
using Bins = Sampling::Bins;

namespace
{

constexpr uint32_t width = 4096;
constexpr uint32_t height = 3000;

enum class Scene
{
    Random,
    Smooth
};

const char* nameOf(Scene scene)
{
    return scene == Scene::Random ? "random" : "smooth";
}

// Samples of `depth` bits in bytes or 16-bit words, from a fixed seed. The
// smooth scene is a slow wave with a noise of two steps of the 8-bit scale.
std::vector<uint8_t> makeSamples(uint32_t depth, Scene scene)
{
    const bool words = depth > 8;
    std::vector<uint8_t> bytes(size_t{width} * height * (words ? 2 : 1));
    std::mt19937 random(7);
    const int maximum = (1 << depth) - 1;
    const int noiseStep = 1 << (depth - 8);
    std::uniform_int_distribution<int> any(0, maximum);
    std::uniform_int_distribution<int> noise(-2 * noiseStep, 2 * noiseStep);
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x)
        {
            int value = any(random);
            if (scene == Scene::Smooth)
            {
                const double wave = std::sin(x * 0.0042) * std::cos(y * 0.0057);
                value =
                    std::clamp(static_cast<int>(maximum * (0.5 + 0.35 * wave)) + noise(random), 0, maximum);
            }
            const size_t index = size_t{y} * width + x;
            if (words)
            {
                const auto word = static_cast<uint16_t>(value);
                std::memcpy(&bytes[2 * index], &word, 2);
            }
            else
                bytes[index] = static_cast<uint8_t>(value);
        }
    return bytes;
}

// 12-bit words packed as Mono12p: two samples in three bytes, least significant bit first.
std::vector<uint8_t> packMono12p(const std::vector<uint8_t>& words)
{
    std::vector<uint8_t> packed;
    packed.reserve(words.size() / 4 * 3);
    for (size_t i = 0; i + 4 <= words.size(); i += 4)
    {
        const uint32_t first = words[i] | (words[i + 1] << 8);
        const uint32_t second = words[i + 2] | (words[i + 3] << 8);
        const uint32_t pair = first | (second << 12);
        packed.insert(packed.end(), {static_cast<uint8_t>(pair), static_cast<uint8_t>(pair >> 8),
                                     static_cast<uint8_t>(pair >> 16)});
    }
    return packed;
}

// The frame of a format and scene, made on first use and kept: images are made
// only for the benchmarks that the filter selects.
Sampling::ImagePointer sceneImage(Tarvik::EPixelType type, uint32_t depth, Scene scene)
{
    static std::map<std::pair<Tarvik::EPixelType, Scene>, Sampling::ImagePointer> images;
    Sampling::ImagePointer& image = images[{type, scene}];
    if (!image.hasObject())
    {
        const std::vector<uint8_t> samples = makeSamples(depth, scene);
        const std::vector<uint8_t> bytes = type == Tarvik::PixelType_Mono12p ? packMono12p(samples) : samples;
        image =
            Sampling::ImagePointer(new Core::Image(bytes.data(), bytes.size(), type, width, height, 0, 0,
                                                   std::make_shared<Core::AlignedBufferProvider>(), nullptr));
    }
    return image;
}

cv::Mat matOf(const Sampling::ImagePointer& image, int cvType)
{
    return cv::Mat(static_cast<int>(height), static_cast<int>(width), cvType,
                   const_cast<void*>(image->getImageData().data));
}

void setBytes(benchmark::State& state, const Sampling::ImagePointer& image)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(image->getImageSize()));
}

struct MonoFormat
{
    const char* name;
    Tarvik::EPixelType type;
    uint32_t depth;
};

template <typename Sample>
void plainLoop(const Sample* samples, size_t count, Bins& bins)
{
    uint32_t* const counts = bins.data();
    const size_t binCount = bins.size();
    for (size_t i = 0; i < count; ++i)
        if (samples[i] < binCount)
            ++counts[samples[i]];
}

void fourLoops(const uint8_t* samples, size_t count, Bins& bins)
{
    uint32_t tables[4][256] = {};
    size_t i = 0;
    for (; i + 4 <= count; i += 4)
    {
        ++tables[0][samples[i]];
        ++tables[1][samples[i + 1]];
        ++tables[2][samples[i + 2]];
        ++tables[3][samples[i + 3]];
    }
    for (; i < count; ++i)
        ++tables[0][samples[i]];
    for (size_t value = 0; value < bins.size() && value < 256; ++value)
        bins[value] = tables[0][value] + tables[1][value] + tables[2][value] + tables[3][value];
}

void registerMono(const MonoFormat& format, Scene scene)
{
    const std::string base = std::string("Histogram/") + format.name + "/4096x3000/" + nameOf(scene) + "/";
    const size_t bins = size_t{1} << format.depth;
    const bool words = format.depth > 8;

    benchmark::RegisterBenchmark((base + "tessal").c_str(),
                                 [format, scene, bins](benchmark::State& state)
                                 {
                                     const auto image = sceneImage(format.type, format.depth, scene);
                                     for (auto _ : state)
                                     {
                                         Bins lum(bins);
                                         Sampling::sampleMono(image, lum);
                                         benchmark::DoNotOptimize(lum.data());
                                     }
                                     setBytes(state, image);
                                 });
    benchmark::RegisterBenchmark((base + "opencv").c_str(),
                                 [format, scene, bins, words](benchmark::State& state)
                                 {
                                     cv::setNumThreads(1);
                                     const auto image = sceneImage(format.type, format.depth, scene);
                                     const cv::Mat mat = matOf(image, words ? CV_16UC1 : CV_8UC1);
                                     const int channels[] = {0};
                                     const int histSize[] = {static_cast<int>(bins)};
                                     const float range[] = {0.0f, static_cast<float>(bins)};
                                     const float* ranges[] = {range};
                                     cv::Mat histogram;
                                     for (auto _ : state)
                                     {
                                         cv::calcHist(&mat, 1, channels, cv::noArray(), histogram, 1,
                                                      histSize, ranges);
                                         benchmark::DoNotOptimize(histogram.data);
                                     }
                                     setBytes(state, image);
                                 });
    benchmark::RegisterBenchmark((base + "plainloop").c_str(),
                                 [format, scene, bins, words](benchmark::State& state)
                                 {
                                     const auto image = sceneImage(format.type, format.depth, scene);
                                     const void* const data = image->getImageData().data;
                                     const size_t count = size_t{width} * height;
                                     for (auto _ : state)
                                     {
                                         Bins lum(bins);
                                         if (words)
                                             plainLoop(static_cast<const uint16_t*>(data), count, lum);
                                         else
                                             plainLoop(static_cast<const uint8_t*>(data), count, lum);
                                         benchmark::DoNotOptimize(lum.data());
                                     }
                                     setBytes(state, image);
                                 });
    if (!words)
        benchmark::RegisterBenchmark((base + "fourloops").c_str(),
                                     [format, scene](benchmark::State& state)
                                     {
                                         const auto image = sceneImage(format.type, format.depth, scene);
                                         const auto* const data =
                                             static_cast<const uint8_t*>(image->getImageData().data);
                                         for (auto _ : state)
                                         {
                                             Bins lum(256);
                                             fourLoops(data, size_t{width} * height, lum);
                                             benchmark::DoNotOptimize(lum.data());
                                         }
                                         setBytes(state, image);
                                     });
}

// The same bytes as the Mono8 frame of the scene, read as a Bayer pattern.
void registerBayer(Scene scene)
{
    const std::string base = std::string("Histogram/BayerRG8/4096x3000/") + nameOf(scene) + "/";
    benchmark::RegisterBenchmark((base + "tessal").c_str(),
                                 [scene](benchmark::State& state)
                                 {
                                     const auto bayer = sceneImage(Tarvik::PixelType_BayerRG8, 8, scene);
                                     for (auto _ : state)
                                     {
                                         Bins red(256), green(256), blue(256);
                                         Sampling::sampleBayer(bayer, red, green, blue, 0);
                                         benchmark::DoNotOptimize(green.data());
                                     }
                                     setBytes(state, bayer);
                                 });
    benchmark::RegisterBenchmark((base + "mono8").c_str(),
                                 [scene](benchmark::State& state)
                                 {
                                     const auto mono = sceneImage(Tarvik::PixelType_Mono8, 8, scene);
                                     for (auto _ : state)
                                     {
                                         Bins lum(256);
                                         Sampling::sampleMono(mono, lum);
                                         benchmark::DoNotOptimize(lum.data());
                                     }
                                     setBytes(state, mono);
                                 });
}

void registerRun(const MonoFormat& format)
{
    const std::string base = std::string("Run/") + format.name + "/4096x3000/smooth/";
    const size_t bins = size_t{1} << format.depth;
    benchmark::RegisterBenchmark((base + "tessal").c_str(),
                                 [format](benchmark::State& state)
                                 {
                                     const auto image = sceneImage(format.type, format.depth, Scene::Smooth);
                                     const std::shared_ptr<Core::INode> node =
                                         package().createNode("HistogramExtractor");
                                     const auto update = std::make_shared<NullUpdate>();
                                     Utils::Variant input;
                                     input.setData(image);
                                     for (auto _ : state)
                                     {
                                         Core::UpdateOutputs outputs = node->run(update, {{"Image", input}});
                                         benchmark::DoNotOptimize(outputs);
                                     }
                                     setBytes(state, image);
                                 });
    // The sampler reads unpacked words only.
    if (format.type == Tarvik::PixelType_Mono12p)
        return;
    benchmark::RegisterBenchmark((base + "sampling").c_str(),
                                 [format, bins](benchmark::State& state)
                                 {
                                     const auto image = sceneImage(format.type, format.depth, Scene::Smooth);
                                     for (auto _ : state)
                                     {
                                         Bins lum(bins);
                                         Sampling::sampleMono(image, lum);
                                         benchmark::DoNotOptimize(lum.data());
                                     }
                                     setBytes(state, image);
                                 });
}

const MonoFormat mono8{"Mono8", Tarvik::PixelType_Mono8, 8};
const MonoFormat mono12{"Mono12", Tarvik::PixelType_Mono12, 12};
const MonoFormat mono16{"Mono16", Tarvik::PixelType_Mono16, 16};
const MonoFormat mono12p{"Mono12p", Tarvik::PixelType_Mono12p, 12};

const bool registered = []
{
    for (const Scene scene : {Scene::Random, Scene::Smooth})
    {
        for (const MonoFormat& format : {mono8, mono12, mono16})
            registerMono(format, scene);
        registerBayer(scene);
    }
    registerRun(mono8);
    registerRun(mono16);
    registerRun(mono12);
    registerRun(mono12p);
    return true;
}();

} // namespace
