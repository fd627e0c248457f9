// Reads the compressed frames that CImageCompressor writes (and cameras send).
//
// GetCompressionInfo recognises a frame by its magic and reads its header
// without checking it. DecompressImage checks everything before it writes: the
// magic, the version, the status, that the frame matches the descriptor, the
// pixel type, that the image size fits the format and the target, that the body
// lies within the source, and the checksum; then each chunk of the body is
// decompressed straight into the target and unfiltered there. It never reads or
// writes outside the buffers it is given, and every failure raises a GenICam
// exception whose text says what is wrong.
//
// Not thread-safe: one decompressor belongs to one thread at a time.
#pragma once

#include <TarvikUtility/CompressionInfo.h>
#include <TarvikUtility/TarvikUtilityExport.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Tarvik
{

class TARVIKUTILITY_API CImageDecompressor
{
public:
    // The bytes of a CompressionDescriptor; bytes that are not one (an empty
    // descriptor among them) raise InvalidArgumentException.
    CImageDecompressor(const void* descriptor, size_t descriptorSize);
    ~CImageDecompressor();
    CImageDecompressor(const CImageDecompressor&) = delete;
    CImageDecompressor& operator=(const CImageDecompressor&) = delete;

    // True if `data` starts a compressed frame; `info` then holds its header, or a
    // compressionStatus that says why the header cannot be read. False, with a
    // default `info`, for any other bytes. endianness must be 2 (little-endian).
    static bool GetCompressionInfo(CompressionInfo_t& info, const void* data, size_t size, int endianness);

    // Decompresses the frame in `data` (`dataSize` bytes, which may go on past the
    // frame) into `target`, whose capacity `targetSize` gives; sets `targetSize`
    // to the bytes of the image written.
    CompressionInfo_t DecompressImage(void* target, size_t& targetSize, const void* data, size_t dataSize);

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace Tarvik
