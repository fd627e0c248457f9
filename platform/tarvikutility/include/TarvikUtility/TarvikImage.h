// An image in memory: pixel type, size, row padding, orientation and the bytes,
// either owned or a user's buffer attached without a copy.
//
// Copying an image that owns its buffer copies the pixels; copying an image
// with an attached user buffer copies the reference to that buffer, which stays
// the user's. Not thread-safe: one image object belongs to one thread at a time.
#pragma once

#include <TarvikBase/PixelType.h>
#include <TarvikUtility/ImageOrientation.h>
#include <TarvikUtility/TarvikUtilityExport.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Tarvik
{

class TARVIKUTILITY_API CTarvikImage
{
public:
    // An empty image: no buffer, undefined pixel type, no size.
    CTarvikImage();
    // An image with a zero-filled buffer of its own.
    CTarvikImage(EPixelType type, uint32_t width, uint32_t height, size_t paddingX = 0,
                 EImageOrientation orientation = ImageOrientation_TopDown);
    CTarvikImage(const CTarvikImage& other);
    CTarvikImage(CTarvikImage&& other) noexcept;
    CTarvikImage& operator=(const CTarvikImage& other);
    CTarvikImage& operator=(CTarvikImage&& other) noexcept;
    ~CTarvikImage();

    // Uses `buffer` as the image's memory without a copy; the caller keeps it
    // alive as long as the image refers to it. A null buffer, an unknown type or
    // a buffer smaller than the layout needs raises InvalidArgumentException.
    // `handler` belongs to the caller's bookkeeping; the image does not use it.
    void AttachUserBuffer(void* buffer, size_t bufferSize, EPixelType type, uint32_t width, uint32_t height,
                          size_t paddingX, EImageOrientation orientation = ImageOrientation_TopDown,
                          void* handler = nullptr);

    bool IsValid() const { return m_state.data != nullptr; }
    bool IsUserBufferAttached() const { return m_state.data != nullptr && !m_state.owned; }
    EPixelType GetPixelType() const { return m_state.pixelType; }
    uint32_t GetWidth() const { return m_state.width; }
    uint32_t GetHeight() const { return m_state.height; }
    size_t GetPaddingX() const { return m_state.paddingX; }
    EImageOrientation GetOrientation() const { return m_state.orientation; }
    // Bytes from one row to the next.
    size_t GetStride() const;
    // Bytes of the image with every row's padding.
    size_t GetImageSize() const;
    // Bytes of the buffer the image uses, which may be more than the image needs.
    size_t GetBufferSize() const { return m_state.bufferSize; }
    void* GetBuffer() { return m_state.data; }
    const void* GetBuffer() const { return m_state.data; }

private:
    struct AlignedFree
    {
        void operator()(uint8_t* memory) const;
    };

    // Gives the image a zero-filled buffer of its own for the given layout.
    void ResetImage(EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                    EImageOrientation orientation);
    void CopyFrom(const CTarvikImage& other);

    // Everything but the owned memory, copied and moved as one.
    struct State
    {
        uint8_t* data = nullptr;
        bool owned = false;
        size_t bufferSize = 0;
        EPixelType pixelType = PixelType_Undefined;
        uint32_t width = 0;
        uint32_t height = 0;
        size_t paddingX = 0;
        EImageOrientation orientation = ImageOrientation_TopDown;
    };

    std::unique_ptr<uint8_t, AlignedFree> m_ownedBuffer;
    State m_state;
};

} // namespace Tarvik
