// The conversions a viewer runs on every frame, single-threaded, each beside
// OpenCV doing the same and a memcpy of the output (the bandwidth limit):
//   Convert/<Source>_<Output>/<width>x<height>/{tessal,opencv,memcpy}
#include <TarvikBase/PixelType.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace Tarvik;

namespace
{

struct Pair
{
    const char* name;
    EPixelType source;
    EPixelType output;
    int sourceCvType;
    // Applies OpenCV's equivalent of the conversion.
    void (*opencv)(const cv::Mat& source, cv::Mat& target);
};

const Pair kPairs[] = {
    {"BayerRG8_BGRA8", PixelType_BayerRG8, PixelType_BGRa8, CV_8UC1,
     [](const cv::Mat& s, cv::Mat& t) { cv::cvtColor(s, t, cv::COLOR_BayerRG2BGRA); }},
    {"Mono12_Mono8", PixelType_Mono12, PixelType_Mono8, CV_16UC1,
     [](const cv::Mat& s, cv::Mat& t) { s.convertTo(t, CV_8U, 1.0 / 16); }},
    {"RGB8_BGRA8", PixelType_RGB8, PixelType_BGRa8, CV_8UC3,
     [](const cv::Mat& s, cv::Mat& t) { cv::cvtColor(s, t, cv::COLOR_RGB2BGRA); }},
    {"YUV422_BGRA8", PixelType_YUV422_8_UYVY, PixelType_BGRa8, CV_8UC2,
     [](const cv::Mat& s, cv::Mat& t) { cv::cvtColor(s, t, cv::COLOR_YUV2BGRA_UYVY); }},
    {"Mono16_Mono8", PixelType_Mono16, PixelType_Mono8, CV_16UC1,
     [](const cv::Mat& s, cv::Mat& t) { s.convertTo(t, CV_8U, 1.0 / 256); }},
    // Packed camera formats OpenCV does not read, and 16-bit Bayer to 8 bits, which
    // OpenCV demosaics only to 16 bits: measured against memcpy only.
    {"Mono12p_Mono8", PixelType_Mono12p, PixelType_Mono8, CV_8UC1, nullptr},
    {"Mono12p_Mono16", PixelType_Mono12p, PixelType_Mono16, CV_8UC1, nullptr},
    {"Mono10p_Mono8", PixelType_Mono10p, PixelType_Mono8, CV_8UC1, nullptr},
    {"Mono10p_Mono16", PixelType_Mono10p, PixelType_Mono16, CV_8UC1, nullptr},
    {"Mono12Packed_Mono8", PixelType_Mono12Packed, PixelType_Mono8, CV_8UC1, nullptr},
    {"Mono12Packed_Mono16", PixelType_Mono12Packed, PixelType_Mono16, CV_8UC1, nullptr},
    {"Mono10Packed_Mono16", PixelType_Mono10Packed, PixelType_Mono16, CV_8UC1, nullptr},
    {"Mono1p_Mono8", PixelType_Mono1p, PixelType_Mono8, CV_8UC1, nullptr},
    {"Mono2p_Mono8", PixelType_Mono2p, PixelType_Mono8, CV_8UC1, nullptr},
    {"Mono4p_Mono8", PixelType_Mono4p, PixelType_Mono8, CV_8UC1, nullptr},
    {"BayerRG12p_BGRA8", PixelType_BayerRG12p, PixelType_BGRa8, CV_8UC1, nullptr},
    {"BayerRG10p_BGRA8", PixelType_BayerRG10p, PixelType_BGRa8, CV_8UC1, nullptr},
    {"BayerRG12Packed_BGRA8", PixelType_BayerRG12Packed, PixelType_BGRa8, CV_8UC1, nullptr},
    {"BayerRG10_BGRA8", PixelType_BayerRG10, PixelType_BGRa8, CV_16UC1, nullptr},
    {"BayerRG12_BGRA8", PixelType_BayerRG12, PixelType_BGRa8, CV_16UC1, nullptr},
    {"BayerRG16_BGRA8", PixelType_BayerRG16, PixelType_BGRa8, CV_16UC1, nullptr},
};

struct Size
{
    int width;
    int height;
};

const Size kSizes[] = {{1920, 1200}, {4096, 3000}};

// A seeded source image, as many bytes as the source type needs; 12-bit samples
// for the 16-bit sources (a 10-bit source clamps them, at the same speed).
cv::Mat MakeSource(const Pair& pair, const Size& size)
{
    const size_t rowBytes = ComputeBufferSize(pair.source, size.width, 1, 0);
    const int columns = pair.sourceCvType == CV_16UC1 ? size.width : static_cast<int>(rowBytes);
    cv::Mat source(size.height,
                   pair.sourceCvType == CV_8UC3 || pair.sourceCvType == CV_8UC2 ? size.width : columns,
                   pair.sourceCvType);
    std::mt19937 generator(42);
    if (pair.sourceCvType == CV_16UC1)
    {
        std::uniform_int_distribution<int> sample(0, 4095);
        for (auto it = source.begin<uint16_t>(); it != source.end<uint16_t>(); ++it)
            *it = static_cast<uint16_t>(sample(generator));
    }
    else
    {
        std::uniform_int_distribution<int> byte(0, 255);
        for (size_t i = 0; i < source.total() * source.elemSize(); ++i)
            source.data[i] = static_cast<uint8_t>(byte(generator));
    }
    return source;
}

void SetThroughput(benchmark::State& state, size_t outputBytes)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * outputBytes));
}

void RunTessal(benchmark::State& state, const Pair& pair, const Size& size)
{
    const cv::Mat source = MakeSource(pair, size);
    CImageFormatConverter converter;
    converter.OutputPixelFormat = pair.output;
    converter.InconvertibleEdgeHandling = InconvertibleEdgeHandling_Extrapolate;
    // Cache-line aligned like OpenCV's matrices and the viewer's buffers.
    CTarvikImage target(pair.output, size.width, size.height);
    for (auto _ : state)
    {
        converter.Convert(target.GetBuffer(), target.GetBufferSize(), source.data,
                          source.total() * source.elemSize(), pair.source, size.width, size.height, 0);
        benchmark::ClobberMemory();
    }
    SetThroughput(state, target.GetBufferSize());
}

void RunOpenCv(benchmark::State& state, const Pair& pair, const Size& size)
{
    const cv::Mat source = MakeSource(pair, size);
    cv::Mat target;
    pair.opencv(source, target);
    for (auto _ : state)
    {
        pair.opencv(source, target);
        benchmark::ClobberMemory();
    }
    SetThroughput(state, target.total() * target.elemSize());
}

void RunMemcpy(benchmark::State& state, const Pair& pair, const Size& size)
{
    const size_t bytes = ComputeBufferSize(pair.output, size.width, size.height, 0);
    std::vector<uint8_t> from(bytes, 1);
    std::vector<uint8_t> to(bytes);
    for (auto _ : state)
    {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
    }
    SetThroughput(state, bytes);
}

const bool kRegistered = []
{
    cv::setNumThreads(1);
    for (const Pair& pair : kPairs)
    {
        for (const Size& size : kSizes)
        {
            const std::string prefix = std::string("Convert/") + pair.name + "/" +
                                       std::to_string(size.width) + "x" + std::to_string(size.height) + "/";
            benchmark::RegisterBenchmark((prefix + "tessal").c_str(), RunTessal, pair, size)
                ->Unit(benchmark::kMillisecond);
            if (pair.opencv != nullptr)
            {
                benchmark::RegisterBenchmark((prefix + "opencv").c_str(), RunOpenCv, pair, size)
                    ->Unit(benchmark::kMillisecond);
            }
            benchmark::RegisterBenchmark((prefix + "memcpy").c_str(), RunMemcpy, pair, size)
                ->Unit(benchmark::kMillisecond);
        }
    }
    return true;
}();

} // namespace
