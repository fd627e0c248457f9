// The sharpness of a 4096 x 3000 AOI inside a 4100 x 3004 frame, single-threaded,
// on a smooth scene like a camera's (a slow wave with noise) and on a random one:
//   Sharpness/<Format>/4096x3000/<scene>/{tessal,opencv,memcpy}
//     tessal: the node's measurement of the AOI in place; opencv: cv::filter2D
//     with the same kernel into 16-bit (Mono8) or float (Mono16) responses and
//     cv::norm's sum of squares; memcpy: a copy of the AOI's rows.
//   Run/<Format>/4096x3000/smooth/{tessal,conversion,measurement}: the node's
//     whole run through the package beside its two parts alone: the format
//     converter's conversion of the frame (for the formats that need one) and
//     the measurement of the converted AOI.
#include "node_run_support.h"
#include "sample_grid.h"
#include "sharpnessmeasurement.h"

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <TarvikUtility/ImageFormatConverter.h>

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
using namespace HistogramTest;
using TarvikViewerTessalPackage::Detail::measureSharpness;
using TarvikViewerTessalPackage::Detail::SampleRegion;

namespace
{

constexpr uint32_t frameWidth = 4100;
constexpr uint32_t frameHeight = 3004;
constexpr uint32_t aoiLeft = 2;
constexpr uint32_t aoiTop = 2;
constexpr uint32_t aoiWidth = 4096;
constexpr uint32_t aoiHeight = 3000;

enum class Scene
{
    Random,
    Smooth
};

const char* nameOf(Scene scene)
{
    return scene == Scene::Random ? "random" : "smooth";
}

// Samples of `depth` bits from a fixed seed, made once per depth and scene. The
// smooth scene is a slow wave with a noise of two steps of the 8-bit scale.
const SampleGrid& sceneGrid(uint32_t depth, Scene scene)
{
    static std::map<std::pair<uint32_t, Scene>, SampleGrid> grids;
    SampleGrid& grid = grids[{depth, scene}];
    if (!grid.samples.empty())
        return grid;
    grid = SampleGrid{frameWidth, frameHeight, 1, std::vector<uint16_t>(size_t{frameWidth} * frameHeight)};
    std::mt19937 random(7);
    const int maximum = (1 << depth) - 1;
    const int noiseStep = 1 << (depth - 8);
    std::uniform_int_distribution<int> any(0, maximum);
    std::uniform_int_distribution<int> noise(-2 * noiseStep, 2 * noiseStep);
    for (uint32_t y = 0; y < frameHeight; ++y)
        for (uint32_t x = 0; x < frameWidth; ++x)
        {
            int value = any(random);
            if (scene == Scene::Smooth)
            {
                const double wave = std::sin(x * 0.0042) * std::cos(y * 0.0057);
                value =
                    std::clamp(static_cast<int>(maximum * (0.5 + 0.35 * wave)) + noise(random), 0, maximum);
            }
            grid.samples[size_t{y} * frameWidth + x] = static_cast<uint16_t>(value);
        }
    return grid;
}

SampleRegion aoiOf(const uint8_t* frame, size_t stride, uint32_t depth)
{
    const size_t sampleBytes = depth > 8 ? 2 : 1;
    return {frame + aoiTop * stride + aoiLeft * sampleBytes, stride, aoiWidth, aoiHeight, depth};
}

void setAoiBytes(benchmark::State& state, size_t sampleBytes)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * aoiWidth * aoiHeight * sampleBytes));
}

void registerMeasurement(const char* format, uint32_t depth, Scene scene)
{
    const std::string base = std::string("Sharpness/") + format + "/4096x3000/" + nameOf(scene) + "/";
    const bool words = depth > 8;
    const size_t sampleBytes = words ? 2 : 1;
    const size_t stride = frameWidth * sampleBytes;
    const auto frame = [=]
    { return encode(sceneGrid(depth, scene), words ? Packing::Words : Packing::Bytes, depth, 0); };

    benchmark::RegisterBenchmark((base + "tessal").c_str(),
                                 [=](benchmark::State& state)
                                 {
                                     const std::vector<uint8_t> bytes = frame();
                                     for (auto _ : state)
                                         benchmark::DoNotOptimize(
                                             measureSharpness(aoiOf(bytes.data(), stride, depth)));
                                     setAoiBytes(state, sampleBytes);
                                 });
    benchmark::RegisterBenchmark(
        (base + "opencv").c_str(),
        [=](benchmark::State& state)
        {
            cv::setNumThreads(1);
            std::vector<uint8_t> bytes = frame();
            const cv::Mat whole(frameHeight, frameWidth, words ? CV_16UC1 : CV_8UC1, bytes.data(), stride);
            const cv::Mat aoi = whole(cv::Rect(aoiLeft, aoiTop, aoiWidth, aoiHeight));
            cv::Mat kernel(3, 3, CV_32F, cv::Scalar(-1.0f));
            kernel.at<float>(1, 1) = 8.0f;
            cv::Mat response;
            for (auto _ : state)
            {
                cv::filter2D(aoi, response, words ? CV_32F : CV_16S, kernel);
                benchmark::DoNotOptimize(cv::norm(response, cv::NORM_L2SQR));
            }
            setAoiBytes(state, sampleBytes);
        });
    benchmark::RegisterBenchmark(
        (base + "memcpy").c_str(),
        [=](benchmark::State& state)
        {
            const std::vector<uint8_t> bytes = frame();
            std::vector<uint8_t> copy(size_t{aoiWidth} * aoiHeight * sampleBytes);
            const size_t rowBytes = aoiWidth * sampleBytes;
            for (auto _ : state)
            {
                const uint8_t* source = bytes.data() + aoiTop * stride + aoiLeft * sampleBytes;
                for (uint32_t y = 0; y < aoiHeight; ++y)
                    std::memcpy(copy.data() + y * rowBytes, source + y * stride, rowBytes);
                benchmark::DoNotOptimize(copy.data());
                benchmark::ClobberMemory();
            }
            setAoiBytes(state, sampleBytes);
        });
}

using NodeRunSupport::NullUpdate;
using NodeRunSupport::package;

struct RunFormat
{
    const char* name;
    Tarvik::EPixelType type;
    Packing packing;
    uint32_t depth;
    // What the node converts it to before measuring; undefined when it measures the frame itself.
    Tarvik::EPixelType measuredAs;
};

void registerRun(const RunFormat& format)
{
    const std::string base = std::string("Run/") + format.name + "/4096x3000/smooth/";
    const auto frame = [=]
    { return encode(sceneGrid(format.depth, Scene::Smooth), format.packing, format.depth, 0); };
    const Tarvik::EPixelType measuredType =
        format.measuredAs == Tarvik::PixelType_Undefined ? format.type : format.measuredAs;
    const uint32_t measuredDepth = Tarvik::BitDepth(measuredType);
    const size_t measuredSampleBytes = measuredDepth > 8 ? 2 : 1;

    benchmark::RegisterBenchmark((base + "tessal").c_str(),
                                 [=](benchmark::State& state)
                                 {
                                     const std::vector<uint8_t> bytes = frame();
                                     Utils::Variant input;
                                     input.setData(Utils::COWPtr<Core::IImage>(new Core::Image(
                                         bytes.data(), bytes.size(), format.type, frameWidth, frameHeight, 0,
                                         0, std::make_shared<Core::AlignedBufferProvider>(), nullptr)));
                                     const std::shared_ptr<Core::INode> node =
                                         package().createNode("SharpnessExtractor");
                                     auto settings = std::make_shared<Core::MemorySettings>();
                                     settings->setInt("AoiLeft", aoiLeft);
                                     settings->setInt("AoiTop", aoiTop);
                                     settings->setInt("AoiWidth", aoiWidth);
                                     settings->setInt("AoiHeight", aoiHeight);
                                     node->load(settings);
                                     const auto update = std::make_shared<NullUpdate>();
                                     for (auto _ : state)
                                     {
                                         Core::UpdateOutputs outputs = node->run(update, {{"Image", input}});
                                         benchmark::DoNotOptimize(outputs);
                                     }
                                     setAoiBytes(state, measuredSampleBytes);
                                 });
    if (format.measuredAs != Tarvik::PixelType_Undefined)
        benchmark::RegisterBenchmark(
            (base + "conversion").c_str(),
            [=](benchmark::State& state)
            {
                const std::vector<uint8_t> bytes = frame();
                Tarvik::CImageFormatConverter converter;
                converter.MaxNumThreads.SetValue(1);
                converter.OutputPixelFormat.SetValue(format.measuredAs);
                std::vector<uint8_t> converted(converter.GetBufferSizeForConversion(frameWidth, frameHeight));
                for (auto _ : state)
                {
                    converter.Convert(converted.data(), converted.size(), bytes.data(), bytes.size(),
                                      format.type, frameWidth, frameHeight, 0);
                    benchmark::DoNotOptimize(converted.data());
                }
                setAoiBytes(state, measuredSampleBytes);
            });
    benchmark::RegisterBenchmark(
        (base + "measurement").c_str(),
        [=](benchmark::State& state)
        {
            std::vector<uint8_t> measured = frame();
            if (format.measuredAs != Tarvik::PixelType_Undefined)
            {
                const std::vector<uint8_t> bytes = measured;
                Tarvik::CImageFormatConverter converter;
                converter.OutputPixelFormat.SetValue(format.measuredAs);
                measured.resize(converter.GetBufferSizeForConversion(frameWidth, frameHeight));
                converter.Convert(measured.data(), measured.size(), bytes.data(), bytes.size(), format.type,
                                  frameWidth, frameHeight, 0);
            }
            const size_t stride = frameWidth * measuredSampleBytes;
            for (auto _ : state)
                benchmark::DoNotOptimize(measureSharpness(aoiOf(measured.data(), stride, measuredDepth)));
            setAoiBytes(state, measuredSampleBytes);
        });
}

const bool registered = []
{
    for (const Scene scene : {Scene::Smooth, Scene::Random})
    {
        registerMeasurement("Mono8", 8, scene);
        registerMeasurement("Mono16", 16, scene);
    }
    registerRun({"Mono8", Tarvik::PixelType_Mono8, Packing::Bytes, 8, Tarvik::PixelType_Undefined});
    registerRun({"BayerRG8", Tarvik::PixelType_BayerRG8, Packing::Bytes, 8, Tarvik::PixelType_Mono8});
    registerRun({"Mono12p", Tarvik::PixelType_Mono12p, Packing::LsbStream, 12, Tarvik::PixelType_Mono16});
    return true;
}();

} // namespace
