// An image value: pixels of one pixel type in rows of width samples followed by
// paddingX bytes, or an error in place of the pixels.
#pragma once

#include <TarvikDataProcessingCore/core/IValue.h>

#include <TarvikBase/PixelType.h>

#include <cstddef>
#include <cstdint>

namespace Tarvik::DataProcessing::Core
{

// The pixels and the bytes that follow each row.
template <typename Byte>
struct ImageDataView
{
    Byte* data = nullptr;
    size_t paddingX = 0;
};

class TDPC_API IImage : public IValue
{
public:
    ~IImage() override;
    virtual Tarvik::EPixelType getPixelType() const = 0;
    virtual uint32_t getWidth() const = 0;
    virtual uint32_t getHeight() const = 0;
    // Bytes of the whole image, padding included.
    virtual size_t getImageSize() const = 0;
    virtual ImageDataView<const void> getImageData() const = 0;
    virtual ImageDataView<void> getImageData() = 0;
};

} // namespace Tarvik::DataProcessing::Core
