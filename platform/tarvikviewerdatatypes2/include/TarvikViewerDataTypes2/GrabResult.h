// GrabResult: one frame as the camera's stream grabber delivered it, or an error
// in its place. The description is what the camera reported; the buffer holds
// the bytes that arrived, shared by shared_ptr and never copied, not even by a
// copy of the result.
//
// Immutable after construction, so thread-safe without a lock of its own; the
// bytes in the buffer belong to whoever writes them.
//
// Chosen here: getBufferSize() is the size the buffer itself reports (0 without
// a buffer), so that it can never promise more bytes than there are. A result
// may lack a buffer; readers must expect a null getBuffer().
#pragma once

#include <TarvikViewerDataTypes2/Export.h>

#include <TarvikDataProcessingCore/core/IBuffer.h>
#include <TarvikDataProcessingCore/core/IValue.h>

#include <TarvikBase/PixelType.h>

#include <cstddef>
#include <cstdint>
#include <memory>

// What the camera reported about one frame.
struct GrabResultDescription
{
    bool grabSucceeded = false;
    Tarvik::EPixelType pixelType = Tarvik::PixelType_Undefined;
    uint32_t width = 0;
    uint32_t height = 0;
    size_t paddingX = 0;
    // Bytes of the frame that the camera sent; may differ from the buffer's size.
    size_t payloadSize = 0;
};

class TVDT2_API GrabResult : public Tarvik::DataProcessing::Core::IValue
{
public:
    GrabResult(const GrabResultDescription& description,
               std::shared_ptr<Tarvik::DataProcessing::Core::IBuffer> buffer);
    // A result in error state: no frame, no buffer.
    explicit GrabResult(std::shared_ptr<Tarvik::DataProcessing::Core::IError> error);
    GrabResult(const GrabResult& other);
    GrabResult& operator=(const GrabResult& other);
    ~GrabResult() override;

    bool hasError(bool recursive) const override;
    std::shared_ptr<Tarvik::DataProcessing::Core::IError> getError(bool recursive) const override;

    bool grabSucceeded() const { return m_description.grabSucceeded; }
    uint32_t getWidth() const { return m_description.width; }
    uint32_t getHeight() const { return m_description.height; }
    size_t getPaddingX() const { return m_description.paddingX; }
    Tarvik::EPixelType getPixelType() const { return m_description.pixelType; }
    size_t getPayloadSize() const { return m_description.payloadSize; }
    size_t getBufferSize() const;
    std::shared_ptr<Tarvik::DataProcessing::Core::IBuffer> getBuffer() { return m_buffer; }
    std::shared_ptr<const Tarvik::DataProcessing::Core::IBuffer> getBuffer() const { return m_buffer; }

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override;
    void* getRawPointer() override;

private:
    GrabResultDescription m_description;
    std::shared_ptr<Tarvik::DataProcessing::Core::IBuffer> m_buffer;
    std::shared_ptr<Tarvik::DataProcessing::Core::IError> m_error;
};
