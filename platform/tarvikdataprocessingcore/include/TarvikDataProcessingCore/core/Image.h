// The image values: Image and TarvikImage. Both keep their pixels in an IBuffer;
// they differ only in the ways they are made and in the type they report.
//
// An image in error state has no pixels: pixel type undefined, zero size, null data.
// A copy made with a lock gets pixels of its own, so that writing to the copy
// never reaches the source.
//
// Chosen here:
// - The copying constructor reads at most `size` bytes of `data`; a short
//   payload gives a whole image whose missing tail is filled with zeros.
// - Images of zero width or height are allowed and hold no pixels; nodes refuse
//   them where they need pixels.
// - An adopted buffer smaller than the image needs, or an undefined pixel type,
//   raises GenICam::InvalidArgumentException; so does a size that overflows.
#pragma once

#include <TarvikDataProcessingCore/core/IBuffer.h>
#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/core/ValueBase.h>

#include <memory>
#include <utility>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API BufferImage : public IImage, protected ValueBase
{
public:
    ~BufferImage() override;

    // Inline, as all the operations of the image interface here: a call on an
    // Image or a TarvikImage, bound at compile time, names no operation of this class.
    bool hasError(bool) const override { return hasErrorState(); }
    std::shared_ptr<IError> getError(bool) const override { return errorState(); }

    Tarvik::EPixelType getPixelType() const override { return m_pixelType; }
    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    size_t getImageSize() const override { return m_imageSize; }
    ImageDataView<const void> getImageData() const override
    {
        return {m_buffer ? std::as_const(*m_buffer).getData() : nullptr, m_paddingX};
    }
    ImageDataView<void> getImageData() override
    {
        return {m_buffer ? m_buffer->getData() : nullptr, m_paddingX};
    }

    // The buffer that holds the pixels; null in error state.
    const std::shared_ptr<IBuffer>& getBuffer() const { return m_buffer; }

protected:
    BufferImage(std::shared_ptr<IError> error, std::shared_ptr<Threading::RecursiveMutex> lock);
    BufferImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                std::shared_ptr<IBuffer> buffer, std::shared_ptr<Threading::RecursiveMutex> lock);
    BufferImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                std::shared_ptr<IBufferProvider> provider, std::shared_ptr<Threading::RecursiveMutex> lock);
    BufferImage(const void* data, size_t size, Tarvik::EPixelType type, uint32_t width, uint32_t height,
                size_t sourcePaddingX, size_t paddingX, std::shared_ptr<IBufferProvider> provider,
                std::shared_ptr<Threading::RecursiveMutex> lock);
    BufferImage(const BufferImage& source, std::shared_ptr<Threading::RecursiveMutex> lock);

private:
    void allocate(const std::shared_ptr<IBufferProvider>& provider);

    Tarvik::EPixelType m_pixelType = Tarvik::PixelType_Undefined;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    size_t m_paddingX = 0;
    size_t m_imageSize = 0;
    std::shared_ptr<IBufferProvider> m_provider;
    std::shared_ptr<IBuffer> m_buffer;
};

// Reports the registered type of `Self`.
template <typename Self>
class TypedBufferImage : public BufferImage
{
public:
    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Utils::TypeInfo::get<Self>(mustExist);
    }
    const void* getRawPointer() const override { return static_cast<const Self*>(this); }
    void* getRawPointer() override { return static_cast<Self*>(this); }

protected:
    using BufferImage::BufferImage;
};

class TDPC_API Image final : public TypedBufferImage<Image>
{
public:
    Image(std::shared_ptr<IError> error, std::shared_ptr<Threading::RecursiveMutex> lock);
    // Adopts `buffer`; nothing is copied.
    Image(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
          std::shared_ptr<IBuffer> buffer, std::shared_ptr<Threading::RecursiveMutex> lock);
    // Allocates the pixels from `provider` (or an aligned heap buffer when it is null).
    Image(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
          std::shared_ptr<IBufferProvider> provider, std::shared_ptr<Threading::RecursiveMutex> lock);
    // Copies `size` bytes of `data`, rows of `sourcePaddingX`, into rows of `paddingX`.
    Image(const void* data, size_t size, Tarvik::EPixelType type, uint32_t width, uint32_t height,
          size_t sourcePaddingX, size_t paddingX, std::shared_ptr<IBufferProvider> provider,
          std::shared_ptr<Threading::RecursiveMutex> lock);
    Image(const Image& source, std::shared_ptr<Threading::RecursiveMutex> lock);
    ~Image() override;
};

class TDPC_API TarvikImage final : public TypedBufferImage<TarvikImage>
{
public:
    TarvikImage(std::shared_ptr<IError> error, std::shared_ptr<Threading::RecursiveMutex> lock);
    TarvikImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                std::shared_ptr<IBufferProvider> provider, std::shared_ptr<Threading::RecursiveMutex> lock);
    TarvikImage(const TarvikImage& source, std::shared_ptr<Threading::RecursiveMutex> lock);
    ~TarvikImage() override;
};

} // namespace Tarvik::DataProcessing::Core
