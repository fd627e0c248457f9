#include "ConversionEngine.h"

#include "BayerDemosaic.h"
#include "PackedRowKernels.h"
#include "RowPacker.h"
#include "RowUnpacker.h"
#include "SimdRowKernels.h"

#include <hwy/cache_control.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <thread>
#include <vector>

namespace Tarvik::Conversion
{
namespace
{

enum class RowPath
{
    Copy,
    Mono8ToBgra8,
    Mono16ToMono8,
    PackedToMono8,
    PackedToMono16,
    PackedBitsToMono8,
    Rgb8ToBgra8,
    Rgba8ToBgra8,
    Yuv422ToBgra8,
    Bayer8ToBgra8,
    Bayer16ToBgra8,
    GenericMono,
    GenericColor,
    GenericBayer,
};

bool IsPlain(const SourceFormat& format)
{
    return format.packing == PixelPacking::Unpacked && format.family != PixelFamily::YUV;
}

RowPath ChooseRowPath(const SourceImage& source, TargetKind target)
{
    const SourceFormat& format = source.format;
    const bool mono = format.family == PixelFamily::Mono;
    const bool plainColor = IsPlain(format) && format.family == PixelFamily::Color;
    if (IsPlain(format) && ((mono && format.depth == 8 && target == TargetKind::Mono8) ||
                            (mono && format.depth == 16 && target == TargetKind::Mono16) ||
                            (plainColor && format.type == PixelType_RGB8 && target == TargetKind::RGB8) ||
                            (plainColor && format.type == PixelType_RGB16 && target == TargetKind::RGB16)))
    {
        return RowPath::Copy;
    }
    if (target == TargetKind::Mono8 && mono && IsPlain(format) && format.depth > 8)
    {
        return RowPath::Mono16ToMono8;
    }
    if (mono && HasPackedRowKernel(format) && IsMonoTarget(target))
    {
        return target == TargetKind::Mono8 ? RowPath::PackedToMono8 : RowPath::PackedToMono16;
    }
    if (mono && format.packing == PixelPacking::LsbStream && format.depth <= 4 && target == TargetKind::Mono8)
    {
        return RowPath::PackedBitsToMono8;
    }
    if (target == TargetKind::BGRa8)
    {
        if (mono && IsPlain(format) && format.depth == 8)
            return RowPath::Mono8ToBgra8;
        if (plainColor && format.depth == 8)
            return format.storedChannels == 3 ? RowPath::Rgb8ToBgra8 : RowPath::Rgba8ToBgra8;
        if (format.yuv == YuvLayout::Uyvy422 || format.yuv == YuvLayout::Yuyv422)
            return RowPath::Yuv422ToBgra8;
        if (format.family == PixelFamily::Bayer && source.width > 1 && source.height > 1)
        {
            if (IsPlain(format) && format.depth == 8)
                return RowPath::Bayer8ToBgra8;
            if (format.depth > 8)
                return RowPath::Bayer16ToBgra8;
        }
    }
    if (format.family == PixelFamily::Bayer)
    {
        return RowPath::GenericBayer;
    }
    if (format.family == PixelFamily::Mono || (format.family == PixelFamily::YUV && IsMonoTarget(target)))
    {
        return RowPath::GenericMono;
    }
    return RowPath::GenericColor;
}

size_t TargetRowBytes(const TargetImage& target)
{
    static constexpr size_t kBytesPerPixel[] = {1, 2, 3, 6, 4};
    return kBytesPerPixel[static_cast<size_t>(target.kind)] * target.width;
}

// Frames whose source and target together exceed this do not stay in the cache:
// their output is written past it.
constexpr uint64_t kStreamingThreshold = 24u << 20;

// Converts rows of one band; owns the scratch rows of the generic paths.
class RowWorker
{
public:
    RowWorker(const ConversionJob& job, RowPath path)
        : m_job(job)
        , m_path(path)
        , m_streamOutput(uint64_t{job.source.stride} * job.source.height +
                             uint64_t{job.target.stride} * job.target.height >=
                         kStreamingThreshold)
    {
        const size_t width = job.source.width;
        if (path == RowPath::GenericBayer || path == RowPath::Bayer16ToBgra8)
        {
            for (auto& row : m_bayerRows)
            {
                row.resize(width);
            }
        }
        if (path == RowPath::GenericMono)
        {
            m_samples.resize(width);
        }
        if (path == RowPath::GenericColor || path == RowPath::GenericBayer)
        {
            m_samples.resize(3 * width);
        }
    }

    void ConvertRows(uint32_t firstRow, uint32_t endRow)
    {
        for (uint32_t y = firstRow; y < endRow; ++y)
        {
            const uint32_t targetRow = m_job.reverseRows ? m_job.source.height - 1 - y : y;
            uint8_t* out = m_job.target.Row(targetRow);
            ConvertRow(y, out);
            if (m_job.source.format.family == PixelFamily::Bayer &&
                m_job.settings.inconvertibleEdgeHandling == InconvertibleEdgeHandling_SetZero)
            {
                ClearFrame(y, out);
            }
        }
        // Kernels may write with non-temporal stores; make them visible before the band counts as done.
        hwy::FlushStream();
    }

private:
    void ConvertRow(uint32_t y, uint8_t* out)
    {
        const SourceImage& source = m_job.source;
        const TargetKind target = m_job.target.kind;
        const bool msbAligned = m_job.settings.outputBitAlignment == OutputBitAlignment_MsbAligned;
        const uint32_t width = source.width;
        const SourceFormat& format = source.format;
        switch (m_path)
        {
        case RowPath::Copy:
            std::memcpy(out, source.Row(y), TargetRowBytes(m_job.target));
            return;
        case RowPath::Mono8ToBgra8:
            Mono8RowToBgra8(source.Row(y), out, width);
            return;
        case RowPath::Mono16ToMono8:
            Mono16RowToMono8(source.Row(y), out, width, format.depth, m_streamOutput);
            return;
        case RowPath::PackedToMono8:
            PackedRowToMono8(source.Row(y), out, width, format, m_streamOutput);
            return;
        case RowPath::PackedToMono16:
            PackedRowToWords(source.Row(y), out, width, format, msbAligned, m_streamOutput);
            return;
        case RowPath::PackedBitsToMono8:
            PackedBitsRowToMono8(source.Row(y), out, width, format, msbAligned);
            return;
        case RowPath::Rgb8ToBgra8:
            Rgb8RowToBgra8(source.Row(y), out, width, format.blueFirst, m_streamOutput);
            return;
        case RowPath::Rgba8ToBgra8:
            Rgba8RowToBgra8(source.Row(y), out, width, format.blueFirst);
            return;
        case RowPath::Yuv422ToBgra8:
            Yuv422RowToBgra8(source.Row(y), out, width, format.yuv == YuvLayout::Uyvy422);
            return;
        case RowPath::Bayer8ToBgra8:
            Bayer8RowToBgra8(source.Row(Above(y)), source.Row(y), source.Row(Below(y)), out, width,
                             BayerRowKindOf(format.phase, y), m_streamOutput);
            return;
        case RowPath::Bayer16ToBgra8:
            Bayer16RowToBgra8(UnpackedBayerRow(Above(y)), UnpackedBayerRow(y), UnpackedBayerRow(Below(y)),
                              out, width, BayerRowKindOf(format.phase, y), format.depth, m_streamOutput);
            return;
        case RowPath::GenericMono:
            UnpackMonoRow(source, y, m_samples.data());
            PackMonoRow(m_samples.data(), format.depth, width, target, msbAligned, out);
            return;
        case RowPath::GenericColor:
            UnpackColorRow(source, y, m_samples.data());
            PackRgbRow(m_samples.data(), ColorRowDepth(format), width, target, msbAligned, out);
            return;
        case RowPath::GenericBayer:
        {
            const bool hasRows = source.height > 1;
            DemosaicRow(hasRows ? UnpackedBayerRow(Above(y)) : nullptr, UnpackedBayerRow(y),
                        hasRows ? UnpackedBayerRow(Below(y)) : nullptr, width,
                        BayerRowKindOf(format.phase, y), m_samples.data());
            PackRgbRow(m_samples.data(), format.depth, width, target, msbAligned, out);
            return;
        }
        }
    }

    // The neighbour rows, mirrored at the top and bottom (only asked for images of two rows or more).
    uint32_t Above(uint32_t y) const { return y == 0 ? 1 : y - 1; }
    uint32_t Below(uint32_t y) const { return y + 1 == m_job.source.height ? y - 1 : y + 1; }

    // Each source row is unpacked once for the three output rows that need it.
    const uint16_t* UnpackedBayerRow(uint32_t y)
    {
        const size_t slot = y % m_bayerRows.size();
        if (m_cachedRow[slot] != static_cast<int64_t>(y))
        {
            UnpackMonoRow(m_job.source, y, m_bayerRows[slot].data());
            m_cachedRow[slot] = y;
        }
        return m_bayerRows[slot].data();
    }

    void ClearFrame(uint32_t y, uint8_t* out) const
    {
        const uint32_t width = m_job.source.width;
        if (y == 0 || y + 1 == m_job.source.height)
        {
            ClearPixels(m_job.target.kind, out, 0, width);
            return;
        }
        ClearPixels(m_job.target.kind, out, 0, 1);
        ClearPixels(m_job.target.kind, out, width - 1, 1);
    }

    const ConversionJob& m_job;
    RowPath m_path;
    bool m_streamOutput;
    std::vector<uint16_t> m_samples;
    std::array<std::vector<uint16_t>, 3> m_bayerRows;
    std::array<int64_t, 3> m_cachedRow{-1, -1, -1};
};

// Fewer rows than this per thread cost more to start than they save.
constexpr uint32_t kMinRowsPerThread = 64;

} // namespace

void RunConversion(const ConversionJob& job)
{
    const RowPath path = ChooseRowPath(job.source, job.target.kind);
    const uint32_t height = job.source.height;
    const uint32_t threads =
        std::clamp<uint32_t>(std::min(job.settings.maxNumThreads, height / kMinRowsPerThread), 1, 64);

    // Scratch memory is taken before any thread starts, so no thread can fail.
    std::vector<RowWorker> workers;
    workers.reserve(threads);
    for (uint32_t i = 0; i < threads; ++i)
    {
        workers.emplace_back(job, path);
    }
    const auto bandStart = [&](uint32_t band)
    { return static_cast<uint32_t>(uint64_t{height} * band / threads); };

    std::vector<std::jthread> helpers;
    helpers.reserve(threads - 1);
    for (uint32_t band = 1; band < threads; ++band)
    {
        helpers.emplace_back([&, band] { workers[band].ConvertRows(bandStart(band), bandStart(band + 1)); });
    }
    workers[0].ConvertRows(0, bandStart(1));
}

} // namespace Tarvik::Conversion
