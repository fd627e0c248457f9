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

    // Gives the image a zero-filled buffer of its own for the given layout.
    void ResetImage(EPixelType type, uint32_t width, uint32_t height, size_t paddingX = 0,
                    EImageOrientation orientation = ImageOrientation_TopDown);

    // Uses `buffer` as the image's memory without a copy; the caller keeps it
    // alive as long as the image refers to it. A null buffer, an unknown type or
    // a buffer smaller than the layout needs raises InvalidArgumentException.
    // `handler` is kept for the caller and never used by the image.
    void AttachUserBuffer(void* buffer, size_t bufferSize, EPixelType type, uint32_t width, uint32_t height,
                          size_t paddingX, EImageOrientation orientation = ImageOrientation_TopDown,
                          void* handler = nullptr);

    // Drops the buffer and returns to the empty image.
    void Release();

    // A copy of the region `width` x `height` at (`left`, `top`), with no row
    // padding. The region must lie inside the image (OutOfRangeException) and
    // start on a whole pixel group of packed formats: an even column for two
    // samples in three bytes and for YUV 4:2:2, a multiple of four for YUV 4:1:1
    // (InvalidArgumentException). A Bayer region starting on an odd row or column
    // gets the pixel type of its own first pixel, so its colours stay right.
    CTarvikImage GetAoi(uint32_t left, uint32_t top, uint32_t width, uint32_t height) const;

    // Relabels the bytes as another pixel type with the same size and padding;
    // refuses an unknown type or one that needs more bytes than the buffer holds.
    void ChangePixelType(EPixelType type);

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
    void* GetUserBufferHandler() const { return m_state.handler; }

private:
    struct AlignedFree
    {
        void operator()(uint8_t* memory) const;
    };

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
        void* handler = nullptr;
    };

    std::unique_ptr<uint8_t, AlignedFree> m_ownedBuffer;
    State m_state;
};

} // namespace Tarvik
