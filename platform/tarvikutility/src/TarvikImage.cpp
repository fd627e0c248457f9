#include <TarvikUtility/TarvikImage.h>

#include <GCBase/GCException.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace Tarvik
{
namespace
{

// Rows of owned buffers start on cache lines when the stride allows, for the vector paths.
constexpr size_t kBufferAlignment = 64;

void RequireKnownType(EPixelType type)
{
    if (!IsKnownPixelType(type))
    {
        throw INVALID_ARGUMENT_EXCEPTION("Unknown pixel type 0x%08X", static_cast<unsigned>(type));
    }
}

// Bytes an image needs: every row with its padding but the last row's.
size_t RequiredBytes(EPixelType type, uint32_t width, uint32_t height, size_t paddingX)
{
    const size_t size = ComputeBufferSize(type, width, height, paddingX);
    return size == 0 ? 0 : size - paddingX;
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
    m_state = State{memory, true, size, type, width, height, paddingX, orientation};
}

void CTarvikImage::AttachUserBuffer(void* buffer, size_t bufferSize, EPixelType type, uint32_t width,
                                    uint32_t height, size_t paddingX, EImageOrientation orientation,
                                    void* /*handler*/)
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
    m_state =
        State{static_cast<uint8_t*>(buffer), false, bufferSize, type, width, height, paddingX, orientation};
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

} // namespace Tarvik
