#include <TarvikBase/PixelTypeInfo.h>

#include <GCBase/GCException.h>

#include <limits>

namespace Tarvik
{
namespace
{

constexpr size_t kMaxSize = std::numeric_limits<size_t>::max();

const PixelTypeInfo& RequireInfo(EPixelType type)
{
    const PixelTypeInfo* info = FindPixelTypeInfo(type);
    if (info == nullptr)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Unknown pixel type 0x%08X", static_cast<unsigned>(type));
    }
    return *info;
}

// Bytes of the pixels of one row of one plane, rounded up to whole bytes.
size_t RowPixelBytes(const PixelTypeInfo& info, uint32_t width)
{
    const uint64_t bitsPerPlanePixel =
        info.packing == PixelPacking::Planar ? info.bitsPerPixel / 3 : info.bitsPerPixel;
    // 32 bits of width times at most 64 bits per pixel cannot overflow 64 bits.
    return static_cast<size_t>((uint64_t{width} * bitsPerPlanePixel + 7) / 8);
}

size_t PlaneCount(const PixelTypeInfo& info)
{
    return info.packing == PixelPacking::Planar ? 3 : 1;
}

size_t CheckedStride(const PixelTypeInfo& info, uint32_t width, size_t paddingX)
{
    const size_t rowBytes = RowPixelBytes(info, width);
    if (paddingX > kMaxSize - rowBytes)
    {
        throw OUT_OF_RANGE_EXCEPTION("Row stride of %u pixels of %s plus %zu bytes padding overflows", width,
                                     info.name, paddingX);
    }
    return rowBytes + paddingX;
}

} // namespace

uint32_t BitPerPixel(EPixelType type)
{
    const PixelTypeInfo* info = FindPixelTypeInfo(type);
    return info ? info->bitsPerPixel : 0;
}

uint32_t BitDepth(EPixelType type)
{
    const PixelTypeInfo* info = FindPixelTypeInfo(type);
    return info ? info->bitDepth : 0;
}

bool IsKnownPixelType(EPixelType type)
{
    return FindPixelTypeInfo(type) != nullptr;
}

bool ComputeStride(size_t& stride, EPixelType type, uint32_t width, size_t paddingX)
{
    const PixelTypeInfo* info = FindPixelTypeInfo(type);
    if (info == nullptr)
    {
        return false;
    }
    stride = CheckedStride(*info, width, paddingX);
    return true;
}

size_t ComputePaddingX(size_t stride, EPixelType type, uint32_t width)
{
    const PixelTypeInfo& info = RequireInfo(type);
    const size_t rowBytes = RowPixelBytes(info, width);
    if (stride < rowBytes)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Stride of %zu bytes is shorter than %u pixels of %s (%zu bytes)",
                                         stride, width, info.name, rowBytes);
    }
    return stride - rowBytes;
}

size_t ComputeBufferSize(EPixelType type, uint32_t width, uint32_t height, size_t paddingX)
{
    const PixelTypeInfo& info = RequireInfo(type);
    const size_t stride = CheckedStride(info, width, paddingX);
    const size_t rows = PlaneCount(info) * height;
    if (rows != 0 && stride > kMaxSize / rows)
    {
        throw OUT_OF_RANGE_EXCEPTION("Buffer size of %u x %u pixels of %s with %zu bytes padding overflows",
                                     width, height, info.name, paddingX);
    }
    return stride * rows;
}

} // namespace Tarvik
