// What GetCompressionInfo reads from the header of a compressed frame.
#pragma once

#include <TarvikBase/PixelType.h>

#include <cstddef>
#include <cstdint>

namespace Tarvik
{

// compressionStatus: 0 is ok; 1 to 0xFFFF are the camera's own status codes,
// copied from the frame; the values below say why the header could not be read.
enum ECompressionStatus : uint32_t
{
    CompressionStatus_Ok = 0,
    // The frame ends inside its header.
    CompressionStatus_HeaderIncomplete = 0x10000,
    // The header is of a version this library does not read.
    CompressionStatus_VersionNotSupported = 0x10001,
    // The header's image size disagrees with its pixel type and dimensions: the
    // header is damaged, and its dimensions must not be used to allocate an image.
    CompressionStatus_HeaderInconsistent = 0x10002,
};

struct CompressionInfo_t
{
    // The frame holds a compressed image; false for a header that describes no image.
    bool hasCompressedImage = false;
    uint32_t compressionStatus = CompressionStatus_Ok;
    EPixelType pixelType = PixelType_Undefined;
    uint32_t width = 0;
    uint32_t height = 0;
    size_t paddingX = 0;
};

} // namespace Tarvik
