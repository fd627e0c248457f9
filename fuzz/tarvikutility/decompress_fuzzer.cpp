// Reads arbitrary bytes as a compressed frame: GetCompressionInfo, then
// DecompressImage against one of a few descriptors into a target sized from the
// header (or a little short of it). Every refusal must be a GenICam exception;
// the sanitizers catch any access outside the exactly sized buffers.
//
// Input: one selector byte (bit 0: row delta in the descriptor, bits 1-2: its
// chunk size, bit 3: a target 1 to 16 bytes short, bits 4-7: by how much), then
// the frame.
#include <GCBase/GCException.h>
#include <TarvikUtility/ImageCompressor.h>
#include <TarvikUtility/ImageDecompressor.h>

#include <cstddef>
#include <cstdint>
#include <vector>

using namespace Tarvik;

namespace
{

// Larger images than this are not decompressed: the fuzzer's memory is limited, the decompressor's is not.
constexpr size_t maxTarget = 64 * 1024 * 1024;
constexpr uint32_t chunkSizes[] = {512, 1000, 128 * 1024, 7};

std::vector<uint8_t> descriptorFor(uint8_t selector)
{
    return CImageCompressor(1, selector & 1, chunkSizes[(selector >> 1) & 3]).GetCompressionDescriptor();
}

size_t targetSizeFor(const CompressionInfo_t& info)
{
    try
    {
        return ComputeBufferSize(info.pixelType, info.width, info.height, info.paddingX);
    }
    catch (const GenICam::GenericException&)
    {
        return 0;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const uint8_t selector = data[0];
    // A copy of exactly the frame's bytes, so that reading past them is caught.
    const std::vector<uint8_t> frame(data + 1, data + size);

    CompressionInfo_t info;
    CImageDecompressor::GetCompressionInfo(info, frame.data(), frame.size(), 2);
    size_t targetSize = targetSizeFor(info);
    if (targetSize > maxTarget)
        return 0;
    if (selector & 8)
        targetSize -= std::min<size_t>(targetSize, 1 + (selector >> 4));
    std::vector<uint8_t> target(targetSize);
    try
    {
        const std::vector<uint8_t> descriptor = descriptorFor(selector);
        CImageDecompressor decompressor(descriptor.data(), descriptor.size());
        size_t written = target.size();
        decompressor.DecompressImage(target.data(), written, frame.data(), frame.size());
        if (written > target.size())
            __builtin_trap();
    }
    catch (const GenICam::GenericException&)
    {
    }
    return 0;
}
