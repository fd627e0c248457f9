#include "CompressedFrameFormat.h"

#include <TarvikUtility/ImageCompressor.h>

#include <GCBase/GCException.h>

#include <zstd.h>

#include <algorithm>
#include <limits>

namespace Tarvik
{

using namespace CompressedFrame;

struct CImageCompressor::Impl
{
    Codecs codecs;
    int level = 1;
    ZSTD_CCtx* context = nullptr;
    // One chunk after the filter; the compressor may keep a copy, the decompressor may not.
    std::vector<uint8_t> filtered;

    Impl() = default;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl() { ZSTD_freeCCtx(context); }
};

CImageCompressor::CImageCompressor(int level, bool rowDelta, uint32_t chunkSize)
    : m_impl(std::make_unique<Impl>())
{
    if (chunkSize == 0)
        throw INVALID_ARGUMENT_EXCEPTION("Chunks of 0 bytes cannot be compressed.");
    if (level < ZSTD_minCLevel() || level > ZSTD_maxCLevel())
        throw INVALID_ARGUMENT_EXCEPTION("Compression level %d is outside %d to %d.", level, ZSTD_minCLevel(),
                                         ZSTD_maxCLevel());
    m_impl->codecs = Codecs{Codec_Zstd, rowDelta ? Filter_RowDelta : Filter_None, chunkSize};
    m_impl->level = level;
    m_impl->context = ZSTD_createCCtx();
    if (!m_impl->context)
        throw BAD_ALLOC_EXCEPTION("Could not create a compression context.");
}

CImageCompressor::~CImageCompressor() = default;

std::vector<uint8_t> CImageCompressor::GetCompressionDescriptor() const
{
    return encodeDescriptor(m_impl->codecs);
}

size_t CImageCompressor::GetMaxFrameSize(size_t imageSize) const
{
    const size_t chunk = m_impl->codecs.chunkSize;
    const size_t rest = imageSize % chunk;
    return headerSize + imageSize / chunk * ZSTD_compressBound(chunk) + (rest ? ZSTD_compressBound(rest) : 0);
}

size_t CImageCompressor::CompressImage(void* target, size_t targetSize, const void* image, size_t imageSize,
                                       EPixelType type, uint32_t width, uint32_t height, size_t paddingX)
{
    if (!IsKnownPixelType(type))
        throw INVALID_ARGUMENT_EXCEPTION("Pixel type 0x%08X is not defined.", static_cast<unsigned>(type));
    if (paddingX > std::numeric_limits<uint32_t>::max())
        throw INVALID_ARGUMENT_EXCEPTION("A padding of %zu bytes does not fit a frame header.", paddingX);
    const size_t expected = ComputeBufferSize(type, width, height, paddingX);
    if (imageSize != expected)
        throw INVALID_ARGUMENT_EXCEPTION("Image of %zu bytes does not match the %zu bytes of its format.",
                                         imageSize, expected);
    if (!image && imageSize)
        throw INVALID_ARGUMENT_EXCEPTION("No image passed.");
    if (!target || targetSize < GetMaxFrameSize(imageSize))
        throw INVALID_ARGUMENT_EXCEPTION(
            "Target of %zu bytes is smaller than the %zu bytes a frame may need.", targetSize,
            GetMaxFrameSize(imageSize));

    const Codecs& codecs = m_impl->codecs;
    const size_t stride = codecs.filter == Filter_RowDelta ? rowStride(type, width, paddingX) : 0;
    const auto* const pixels = static_cast<const uint8_t*>(image);
    auto* const frame = static_cast<uint8_t*>(target);
    uint8_t* const body = frame + headerSize;
    const size_t bodyCapacity = targetSize - headerSize;
    size_t bodySize = 0;
    for (size_t offset = 0; offset < imageSize; offset += codecs.chunkSize)
    {
        const size_t chunk = std::min<size_t>(codecs.chunkSize, imageSize - offset);
        const uint8_t* source = pixels + offset;
        if (stride)
        {
            m_impl->filtered.resize(codecs.chunkSize);
            applyRowDelta(m_impl->filtered.data(), pixels, offset, offset + chunk, stride);
            source = m_impl->filtered.data();
        }
        const size_t written = ZSTD_compressCCtx(m_impl->context, body + bodySize, bodyCapacity - bodySize,
                                                 source, chunk, m_impl->level);
        if (ZSTD_isError(written))
            throw RUNTIME_EXCEPTION("Compression failed: %s", ZSTD_getErrorName(written));
        bodySize += written;
    }

    Header header;
    header.codecs = codecs;
    header.pixelType = type;
    header.width = width;
    header.height = height;
    header.paddingX = static_cast<uint32_t>(paddingX);
    header.imageSize = imageSize;
    header.bodySize = bodySize;
    writeHeader(frame, header);
    header.checksum = frameChecksum(frame, body, bodySize);
    writeHeader(frame, header);
    return headerSize + bodySize;
}

std::vector<uint8_t> CImageCompressor::CompressImage(const void* image, size_t imageSize, EPixelType type,
                                                     uint32_t width, uint32_t height, size_t paddingX)
{
    std::vector<uint8_t> frame(GetMaxFrameSize(imageSize));
    frame.resize(CompressImage(frame.data(), frame.size(), image, imageSize, type, width, height, paddingX));
    return frame;
}

} // namespace Tarvik
