#include "CompressedFrameFormat.h"

#include <TarvikUtility/ImageDecompressor.h>

#include <GCBase/GCException.h>

#include <zstd.h>

#include <algorithm>

namespace Tarvik
{

using namespace CompressedFrame;

namespace
{

constexpr int littleEndian = 2;

// Every header check that needs no body, in the order a reader meets the fields.
void checkHeader(const Header& header, const Codecs& expected)
{
    if (header.version != formatVersion)
        throw INVALID_ARGUMENT_EXCEPTION("Compressed frame version %u is not supported, only %u.",
                                         static_cast<unsigned>(header.version),
                                         static_cast<unsigned>(formatVersion));
    if (header.status != 0)
        throw INVALID_ARGUMENT_EXCEPTION("Compressed frame reports the camera's compression status %u.",
                                         static_cast<unsigned>(header.status));
    if (header.codecs != expected)
        throw INVALID_ARGUMENT_EXCEPTION(
            "Compressed frame of codec %u, filter %u and chunks of %u bytes does not match its descriptor "
            "(codec %u, filter %u, chunks of %u bytes).",
            static_cast<unsigned>(header.codecs.codec), static_cast<unsigned>(header.codecs.filter),
            static_cast<unsigned>(header.codecs.chunkSize), static_cast<unsigned>(expected.codec),
            static_cast<unsigned>(expected.filter), static_cast<unsigned>(expected.chunkSize));
    if (header.reserved != 0)
        throw INVALID_ARGUMENT_EXCEPTION("Compressed frame has %u in its reserved field instead of 0.",
                                         static_cast<unsigned>(header.reserved));
    if (!IsKnownPixelType(header.pixelType))
        throw INVALID_ARGUMENT_EXCEPTION("Compressed frame has the undefined pixel type 0x%08X.",
                                         static_cast<unsigned>(header.pixelType));
    const size_t formatSize =
        ComputeBufferSize(header.pixelType, header.width, header.height, header.paddingX);
    if (header.imageSize != formatSize)
        throw INVALID_ARGUMENT_EXCEPTION(
            "Compressed frame states an image of %llu bytes, but its format needs %zu bytes.",
            static_cast<unsigned long long>(header.imageSize), formatSize);
}

// One damaged byte in the pixel type, the dimensions, the padding or the image
// size makes the stated size disagree with the one the format gives.
bool statesItsOwnSize(const Header& header)
{
    if (!IsKnownPixelType(header.pixelType))
        return false;
    try
    {
        return header.imageSize ==
               ComputeBufferSize(header.pixelType, header.width, header.height, header.paddingX);
    }
    catch (const GenICam::GenericException&)
    {
        return false;
    }
}

CompressionInfo_t infoOf(const Header& header)
{
    CompressionInfo_t info;
    info.hasCompressedImage = header.imageSize != 0;
    info.compressionStatus = header.status;
    info.pixelType = header.pixelType;
    info.width = header.width;
    info.height = header.height;
    info.paddingX = header.paddingX;
    return info;
}

} // namespace

struct CImageDecompressor::Impl
{
    Codecs codecs;
    ZSTD_DCtx* context = nullptr;

    Impl() = default;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl() { ZSTD_freeDCtx(context); }
};

CImageDecompressor::CImageDecompressor(const void* descriptor, size_t size)
    : m_impl(std::make_unique<Impl>())
{
    m_impl->codecs = decodeDescriptor(descriptor, size);
    m_impl->context = ZSTD_createDCtx();
    if (!m_impl->context)
        throw BAD_ALLOC_EXCEPTION("Could not create a decompression context.");
}

CImageDecompressor::~CImageDecompressor() = default;

bool CImageDecompressor::GetCompressionInfo(CompressionInfo_t& info, const void* data, size_t size,
                                            int endianness)
{
    if (endianness != littleEndian)
        throw INVALID_ARGUMENT_EXCEPTION("Endianness %d is not supported, only %d.", endianness,
                                         littleEndian);
    info = CompressionInfo_t();
    if (!startsWithMagic(data, size))
        return false;
    info.hasCompressedImage = true;
    if (size < headerSize)
    {
        info.compressionStatus = CompressionStatus_HeaderIncomplete;
        return true;
    }
    const Header header = readHeader(static_cast<const uint8_t*>(data));
    if (header.version != formatVersion)
    {
        info.compressionStatus = CompressionStatus_VersionNotSupported;
        return true;
    }
    if (header.imageSize != 0 && !statesItsOwnSize(header))
    {
        info.compressionStatus = CompressionStatus_HeaderInconsistent;
        return true;
    }
    info = infoOf(header);
    return true;
}

CompressionInfo_t CImageDecompressor::DecompressImage(void* target, size_t& targetSize, const void* data,
                                                      size_t dataSize)
{
    if (!startsWithMagic(data, dataSize))
        throw INVALID_ARGUMENT_EXCEPTION("Data of %zu bytes is no compressed frame: the magic is missing.",
                                         data ? dataSize : 0);
    if (dataSize < headerSize)
        throw INVALID_ARGUMENT_EXCEPTION("Compressed frame of %zu bytes ends inside its header of %zu bytes.",
                                         dataSize, headerSize);
    const auto* const frame = static_cast<const uint8_t*>(data);
    const Header header = readHeader(frame);
    checkHeader(header, m_impl->codecs);
    if (header.bodySize > dataSize - headerSize)
        throw INVALID_ARGUMENT_EXCEPTION("Compressed frame body of %llu bytes is cut off after %zu bytes.",
                                         static_cast<unsigned long long>(header.bodySize),
                                         dataSize - headerSize);
    if (header.imageSize > targetSize)
        throw INVALID_ARGUMENT_EXCEPTION("Target of %zu bytes is too small for the image of %llu bytes.",
                                         targetSize, static_cast<unsigned long long>(header.imageSize));
    if (!target && header.imageSize)
        throw INVALID_ARGUMENT_EXCEPTION("No target passed.");
    const uint8_t* body = frame + headerSize;
    const uint64_t checksum = frameChecksum(frame, body, header.bodySize);
    if (checksum != header.checksum)
        throw INVALID_ARGUMENT_EXCEPTION(
            "Compressed frame checksum 0x%016llX does not match its content (0x%016llX).",
            static_cast<unsigned long long>(header.checksum), static_cast<unsigned long long>(checksum));

    const size_t stride = header.codecs.filter == Filter_RowDelta
                              ? rowStride(header.pixelType, header.width, header.paddingX)
                              : 0;
    auto* const image = static_cast<uint8_t*>(target);
    size_t remaining = header.bodySize;
    size_t offset = 0;
    while (offset < header.imageSize)
    {
        const size_t chunkLimit = std::min<uint64_t>(header.codecs.chunkSize, header.imageSize - offset);
        const size_t frameSize = remaining ? ZSTD_findFrameCompressedSize(body, remaining) : 0;
        const unsigned long long content =
            remaining && !ZSTD_isError(frameSize) ? ZSTD_getFrameContentSize(body, frameSize) : 0;
        if (remaining == 0 || ZSTD_isError(frameSize) || content == ZSTD_CONTENTSIZE_ERROR ||
            content == ZSTD_CONTENTSIZE_UNKNOWN || content == 0 || content > chunkLimit)
            throw INVALID_ARGUMENT_EXCEPTION(
                "Compressed frame body holds no valid chunk at byte %zu for image byte %zu of %llu.",
                static_cast<size_t>(body - frame - headerSize), offset,
                static_cast<unsigned long long>(header.imageSize));
        const size_t written = ZSTD_decompressDCtx(m_impl->context, image + offset, content, body, frameSize);
        if (ZSTD_isError(written) || written != content)
            throw INVALID_ARGUMENT_EXCEPTION(
                "Compressed frame chunk at image byte %zu cannot be decompressed: %s", offset,
                ZSTD_isError(written) ? ZSTD_getErrorName(written) : "short");
        undoRowDelta(image, offset, offset + written, stride);
        offset += written;
        body += frameSize;
        remaining -= frameSize;
    }
    if (remaining != 0)
        throw INVALID_ARGUMENT_EXCEPTION("Compressed frame body has %zu bytes left after the image.",
                                         remaining);

    targetSize = header.imageSize;
    return infoOf(header);
}

} // namespace Tarvik
