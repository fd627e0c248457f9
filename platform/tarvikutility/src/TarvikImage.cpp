#include <TarvikUtility/TarvikImage.h>

#include <GCBase/GCException.h>
#include <TarvikBase/PixelTypeInfo.h>
#include <TarvikBase/PixelTypeMapper.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

namespace Tarvik
{
namespace
{

// Rows of owned buffers start on cache lines when the stride allows, for the vector paths.
constexpr size_t kBufferAlignment = 64;

const PixelTypeInfo& RequireKnownType(EPixelType type)
{
    const PixelTypeInfo* info = FindPixelTypeInfo(type);
    if (info == nullptr)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Unknown pixel type 0x%08X", static_cast<unsigned>(type));
    }
    return *info;
}

// Bytes an image needs: every row with its padding but the last row's.
size_t RequiredBytes(EPixelType type, uint32_t width, uint32_t height, size_t paddingX)
{
    const size_t size = ComputeBufferSize(type, width, height, paddingX);
    return size == 0 ? 0 : size - paddingX;
}

uint32_t BitsPerPlanePixel(const PixelTypeInfo& info)
{
    return info.packing == PixelPacking::Planar ? info.bitsPerPixel / 3 : info.bitsPerPixel;
}

// Pixels that share bytes and must stay together when a region is cut out.
uint32_t PixelGroup(const PixelTypeInfo& info)
{
    if (info.packing == PixelPacking::GroupedMsb || info.type == PixelType_YUV422_8_UYVY ||
        info.type == PixelType_YUV422_8)
    {
        return 2;
    }
    return info.type == PixelType_YUV411_8_UYYVYY ? 4 : 1;
}

// Copies `bitCount` bits starting at bit `bitOffset` of `source` (least significant
// bit first) to `target` from its bit 0, reading only the bytes those bits occupy.
// Unused high bits of the last target byte are zero.
void CopyBits(const uint8_t* source, size_t bitOffset, size_t bitCount, uint8_t* target)
{
    const size_t targetBytes = (bitCount + 7) / 8;
    const size_t shift = bitOffset % 8;
    const uint8_t* first = source + bitOffset / 8;
    if (shift == 0)
    {
        std::memcpy(target, first, targetBytes);
    }
    else
    {
        const size_t sourceBytes = (shift + bitCount + 7) / 8;
        for (size_t i = 0; i < targetBytes; ++i)
        {
            const unsigned low = first[i] >> shift;
            const unsigned high = i + 1 < sourceBytes ? first[i + 1] << (8 - shift) : 0;
            target[i] = static_cast<uint8_t>(low | high);
        }
    }
    if (bitCount % 8 != 0)
    {
        target[targetBytes - 1] &= static_cast<uint8_t>((1u << (bitCount % 8)) - 1);
    }
}

// The Bayer type whose pattern starts at column `left` and row `top` of `type`'s pattern.
EPixelType ShiftedBayerType(const PixelTypeInfo& info, uint32_t left, uint32_t top)
{
    std::string name = info.name;
    if (info.family != PixelFamily::Bayer || ((left | top) & 1u) == 0)
    {
        return info.type;
    }
    // name is "Bayer" followed by the first row's two colours, then the second row's are implied.
    char first = name[5];
    char second = name[6];
    if (top & 1u)
    {
        // The next row has green where this one has red or blue, and the other colour where this one has
        // green.
        const char rowColour = first == 'G' ? second : first;
        const char otherColour = rowColour == 'R' ? 'B' : 'R';
        first = first == 'G' ? otherColour : 'G';
        second = second == 'G' ? otherColour : 'G';
    }
    if (left & 1u)
    {
        std::swap(first, second);
    }
    name[5] = first;
    name[6] = second;
    return CPixelTypeMapper::GetTarvikPixelTypeByName(name.c_str());
}

} // namespace

void CTarvikImage::AlignedFree::operator()(uint8_t* memory) const
{
    std::free(memory);
}

CTarvikImage::CTarvikImage() = default;

CTarvikImage::CTarvikImage(EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                           EImageOrientation orientation)
{
    ResetImage(type, width, height, paddingX, orientation);
}

CTarvikImage::CTarvikImage(const CTarvikImage& other)
{
    CopyFrom(other);
}

CTarvikImage::CTarvikImage(CTarvikImage&& other) noexcept
    : m_ownedBuffer(std::move(other.m_ownedBuffer))
    , m_state(std::exchange(other.m_state, State{}))
{
}

CTarvikImage& CTarvikImage::operator=(const CTarvikImage& other)
{
    if (this != &other)
    {
        CTarvikImage copy(other);
        *this = std::move(copy);
    }
    return *this;
}

CTarvikImage& CTarvikImage::operator=(CTarvikImage&& other) noexcept
{
    if (this != &other)
    {
        m_ownedBuffer = std::move(other.m_ownedBuffer);
        m_state = std::exchange(other.m_state, State{});
    }
    return *this;
}

CTarvikImage::~CTarvikImage() = default;

void CTarvikImage::CopyFrom(const CTarvikImage& other)
{
    if (other.m_state.owned)
    {
        ResetImage(other.m_state.pixelType, other.m_state.width, other.m_state.height, other.m_state.paddingX,
                   other.m_state.orientation);
        std::memcpy(m_state.data, other.m_state.data, std::min(m_state.bufferSize, other.m_state.bufferSize));
        return;
    }
    m_state = other.m_state;
}

void CTarvikImage::ResetImage(EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                              EImageOrientation orientation)
{
    RequireKnownType(type);
    const size_t size = ComputeBufferSize(type, width, height, paddingX);
    if (size > std::numeric_limits<size_t>::max() - kBufferAlignment)
    {
        throw BAD_ALLOC_EXCEPTION("Image buffer of %zu bytes cannot be allocated", size);
    }
    const size_t allocated = std::max<size_t>(kBufferAlignment, (size + kBufferAlignment - 1) /
                                                                    kBufferAlignment * kBufferAlignment);
    auto* memory = static_cast<uint8_t*>(std::aligned_alloc(kBufferAlignment, allocated));
    if (memory == nullptr)
    {
        throw BAD_ALLOC_EXCEPTION("Image buffer of %zu bytes cannot be allocated", size);
    }
    std::memset(memory, 0, allocated);
    m_ownedBuffer.reset(memory);
    m_state = State{memory, true, size, type, width, height, paddingX, orientation, nullptr};
}

void CTarvikImage::AttachUserBuffer(void* buffer, size_t bufferSize, EPixelType type, uint32_t width,
                                    uint32_t height, size_t paddingX, EImageOrientation orientation,
                                    void* handler)
{
    if (buffer == nullptr)
    {
        throw INVALID_ARGUMENT_EXCEPTION("User buffer is null");
    }
    RequireKnownType(type);
    const size_t required = RequiredBytes(type, width, height, paddingX);
    if (bufferSize < required)
    {
        throw INVALID_ARGUMENT_EXCEPTION(
            "User buffer of %zu bytes is too small for %u x %u pixels of type 0x%08X "
            "with padding %zu: %zu bytes needed",
            bufferSize, width, height, static_cast<unsigned>(type), paddingX, required);
    }
    m_ownedBuffer.reset();
    m_state = State{static_cast<uint8_t*>(buffer),
                    false,
                    bufferSize,
                    type,
                    width,
                    height,
                    paddingX,
                    orientation,
                    handler};
}

void CTarvikImage::Release()
{
    *this = CTarvikImage();
}

size_t CTarvikImage::GetStride() const
{
    size_t stride = 0;
    ComputeStride(stride, m_state.pixelType, m_state.width, m_state.paddingX);
    return stride;
}

size_t CTarvikImage::GetImageSize() const
{
    return IsKnownPixelType(m_state.pixelType)
               ? ComputeBufferSize(m_state.pixelType, m_state.width, m_state.height, m_state.paddingX)
               : 0;
}

CTarvikImage CTarvikImage::GetAoi(uint32_t left, uint32_t top, uint32_t width, uint32_t height) const
{
    if (!IsValid())
    {
        throw INVALID_ARGUMENT_EXCEPTION("Image has no buffer");
    }
    if (uint64_t{left} + width > m_state.width || uint64_t{top} + height > m_state.height)
    {
        throw OUT_OF_RANGE_EXCEPTION("Region %u x %u at (%u, %u) leaves the image of %u x %u pixels", width,
                                     height, left, top, m_state.width, m_state.height);
    }
    const PixelTypeInfo& info = RequireKnownType(m_state.pixelType);
    const uint32_t group = PixelGroup(info);
    if (left % group != 0)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Region of %s must start on a multiple of %u columns, not %u",
                                         info.name, group, left);
    }
    // Rows are counted from the top of the picture; a bottom-up image keeps them from the end of memory.
    const uint32_t memoryTop =
        m_state.orientation == ImageOrientation_BottomUp ? m_state.height - top - height : top;
    CTarvikImage region(ShiftedBayerType(info, left, memoryTop), width, height, 0, m_state.orientation);

    const uint32_t bits = BitsPerPlanePixel(info);
    const size_t planes = info.packing == PixelPacking::Planar ? 3 : 1;
    const size_t sourceStride = GetStride();
    const size_t regionStride = region.GetStride();
    for (size_t plane = 0; plane < planes; ++plane)
    {
        for (uint32_t y = 0; y < height; ++y)
        {
            const uint8_t* sourceRow = m_state.data + (plane * m_state.height + memoryTop + y) * sourceStride;
            uint8_t* regionRow = region.m_state.data + (plane * height + y) * regionStride;
            CopyBits(sourceRow, size_t{left} * bits, size_t{width} * bits, regionRow);
        }
    }
    return region;
}

void CTarvikImage::ChangePixelType(EPixelType type)
{
    RequireKnownType(type);
    const size_t required = RequiredBytes(type, m_state.width, m_state.height, m_state.paddingX);
    if (required > m_state.bufferSize)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Pixel type 0x%08X needs %zu bytes, the buffer holds %zu",
                                         static_cast<unsigned>(type), required, m_state.bufferSize);
    }
    m_state.pixelType = type;
}

} // namespace Tarvik
