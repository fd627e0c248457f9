// Compresses images into the compressed frame format that CImageDecompressor
// reads: what a camera with compression sends. Used by tests, benchmarks and the
// host's synthetic camera.
//
// Not thread-safe: one compressor belongs to one thread at a time.
#pragma once

#include <TarvikBase/PixelType.h>
#include <TarvikUtility/TarvikUtilityExport.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Tarvik
{

class TARVIKUTILITY_API CImageCompressor
{
public:
    // level: the zstd level (1 is fast, 19 small); rowDelta: store each row as its
    // difference to the row before, which suits camera images; chunkSize: image
    // bytes per independently compressed chunk. Bad values raise InvalidArgumentException.
    explicit CImageCompressor(int level = 1, bool rowDelta = true, uint32_t chunkSize = 128 * 1024);
    ~CImageCompressor();
    CImageCompressor(const CImageCompressor&) = delete;
    CImageCompressor& operator=(const CImageCompressor&) = delete;

    // The bytes of the CompressionDescriptor that the frames of this compressor match.
    std::vector<uint8_t> GetCompressionDescriptor() const;

    // The most bytes a frame of an image of `imageSize` bytes can take.
    size_t GetMaxFrameSize(size_t imageSize) const;

    // Compresses the image of `imageSize` bytes (rows with padding, as
    // ComputeBufferSize gives them) into `target`; returns the frame's size. A
    // size that does not match the format, an unknown type or a target smaller
    // than GetMaxFrameSize raise InvalidArgumentException.
    size_t CompressImage(void* target, size_t targetSize, const void* image, size_t imageSize,
                         EPixelType type, uint32_t width, uint32_t height, size_t paddingX);
    // The same into a vector of exactly the frame's size.
    std::vector<uint8_t> CompressImage(const void* image, size_t imageSize, EPixelType type, uint32_t width,
                                       uint32_t height, size_t paddingX);

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace Tarvik
