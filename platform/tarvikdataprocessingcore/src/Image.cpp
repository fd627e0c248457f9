#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <GCBase/GCException.h>

#include <algorithm>
#include <cstring>

namespace Tarvik::DataProcessing::Core
{

IImage::~IImage() = default;
BufferImage::~BufferImage() = default;
Image::~Image() = default;
TarvikImage::~TarvikImage() = default;

namespace
{

size_t imageSize(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX)
{
    if (!Tarvik::IsKnownPixelType(type))
        throw INVALID_ARGUMENT_EXCEPTION("Pixel type 0x%08X is not defined.", static_cast<unsigned>(type));
    return Tarvik::ComputeBufferSize(type, width, height, paddingX);
}

// Bytes of one row without its padding.
size_t rowBytes(Tarvik::EPixelType type, uint32_t width)
{
    size_t stride = 0;
    Tarvik::ComputeStride(stride, type, width, 0);
    return stride;
}

std::shared_ptr<IBufferProvider> providerOrDefault(std::shared_ptr<IBufferProvider> provider)
{
    return provider ? std::move(provider) : std::make_shared<AlignedBufferProvider>();
}

} // namespace

BufferImage::BufferImage(std::shared_ptr<IError> error, std::shared_ptr<Threading::RecursiveMutex> lock)
    : ValueBase(std::move(lock), std::move(error))
{
    if (!errorState())
        throw INVALID_ARGUMENT_EXCEPTION("An image in error state needs an error.");
}

BufferImage::BufferImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                         std::shared_ptr<IBuffer> buffer, std::shared_ptr<Threading::RecursiveMutex> lock)
    : ValueBase(std::move(lock))
    , m_pixelType(type)
    , m_width(width)
    , m_height(height)
    , m_paddingX(paddingX)
    , m_imageSize(imageSize(type, width, height, paddingX))
    , m_buffer(std::move(buffer))
{
    if (!m_buffer)
        throw INVALID_ARGUMENT_EXCEPTION("No buffer passed.");
    if (m_buffer->getSize() < m_imageSize)
        throw INVALID_ARGUMENT_EXCEPTION("Buffer of %zu bytes is too small for an image of %zu bytes.",
                                         m_buffer->getSize(), m_imageSize);
}

BufferImage::BufferImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                         std::shared_ptr<IBufferProvider> provider,
                         std::shared_ptr<Threading::RecursiveMutex> lock)
    : ValueBase(std::move(lock))
    , m_pixelType(type)
    , m_width(width)
    , m_height(height)
    , m_paddingX(paddingX)
    , m_imageSize(imageSize(type, width, height, paddingX))
{
    allocate(provider);
}

BufferImage::BufferImage(const void* data, size_t size, Tarvik::EPixelType type, uint32_t width,
                         uint32_t height, size_t sourcePaddingX, size_t paddingX,
                         std::shared_ptr<IBufferProvider> provider,
                         std::shared_ptr<Threading::RecursiveMutex> lock)
    : BufferImage(type, width, height, paddingX, std::move(provider), std::move(lock))
{
    if (!data && size)
        throw INVALID_ARGUMENT_EXCEPTION("No data passed.");
    auto* const target = static_cast<uint8_t*>(m_buffer->getData());
    const auto* const source = static_cast<const uint8_t*>(data);
    if (sourcePaddingX == paddingX)
    {
        const size_t copied = std::min(size, m_imageSize);
        if (copied)
            std::memcpy(target, source, copied);
        std::memset(target + copied, 0, m_imageSize - copied);
        return;
    }
    // Rows of another padding: copy the pixels of each row, zero the new padding.
    const size_t pixels = type == Tarvik::PixelType_Undefined ? 0 : rowBytes(type, width);
    const size_t sourceStride = pixels + sourcePaddingX;
    const size_t targetStride = pixels + paddingX;
    const size_t planes = height ? m_imageSize / (targetStride * height) : 0;
    std::memset(target, 0, m_imageSize);
    for (size_t row = 0; row < planes * height; ++row)
    {
        const size_t offset = row * sourceStride;
        if (offset >= size)
            break;
        std::memcpy(target + row * targetStride, source + offset, std::min(pixels, size - offset));
    }
}

BufferImage::BufferImage(const BufferImage& source, std::shared_ptr<Threading::RecursiveMutex> lock)
    : ValueBase(std::move(lock), source.errorState())
    , m_pixelType(source.m_pixelType)
    , m_width(source.m_width)
    , m_height(source.m_height)
    , m_paddingX(source.m_paddingX)
    , m_imageSize(source.m_imageSize)
    , m_provider(source.m_provider)
{
    if (!source.m_buffer)
        return;
    allocate(m_provider);
    if (m_imageSize)
        std::memcpy(m_buffer->getData(), source.m_buffer->getData(), m_imageSize);
}

void BufferImage::allocate(const std::shared_ptr<IBufferProvider>& provider)
{
    m_provider = providerOrDefault(provider);
    m_buffer = m_provider->allocate(m_imageSize);
    if (!m_buffer || m_buffer->getSize() < m_imageSize)
        throw BAD_ALLOC_EXCEPTION("Could not allocate an image of %zu bytes.", m_imageSize);
}

Image::Image(std::shared_ptr<IError> error, std::shared_ptr<Threading::RecursiveMutex> lock)
    : TypedBufferImage(std::move(error), std::move(lock))
{
}
Image::Image(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
             std::shared_ptr<IBuffer> buffer, std::shared_ptr<Threading::RecursiveMutex> lock)
    : TypedBufferImage(type, width, height, paddingX, std::move(buffer), std::move(lock))
{
}
Image::Image(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
             std::shared_ptr<IBufferProvider> provider, std::shared_ptr<Threading::RecursiveMutex> lock)
    : TypedBufferImage(type, width, height, paddingX, std::move(provider), std::move(lock))
{
}
Image::Image(const void* data, size_t size, Tarvik::EPixelType type, uint32_t width, uint32_t height,
             size_t sourcePaddingX, size_t paddingX, std::shared_ptr<IBufferProvider> provider,
             std::shared_ptr<Threading::RecursiveMutex> lock)
    : TypedBufferImage(data, size, type, width, height, sourcePaddingX, paddingX, std::move(provider),
                       std::move(lock))
{
}
Image::Image(const Image& source, std::shared_ptr<Threading::RecursiveMutex> lock)
    : TypedBufferImage(source, std::move(lock))
{
}

TarvikImage::TarvikImage(std::shared_ptr<IError> error, std::shared_ptr<Threading::RecursiveMutex> lock)
    : TypedBufferImage(std::move(error), std::move(lock))
{
}
TarvikImage::TarvikImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                         std::shared_ptr<IBufferProvider> provider,
                         std::shared_ptr<Threading::RecursiveMutex> lock)
    : TypedBufferImage(type, width, height, paddingX, std::move(provider), std::move(lock))
{
}
TarvikImage::TarvikImage(const TarvikImage& source, std::shared_ptr<Threading::RecursiveMutex> lock)
    : TypedBufferImage(source, std::move(lock))
{
}

} // namespace Tarvik::DataProcessing::Core
