// CompressionDescriptor: the codec parameters of a camera's compressed frames, as
// opaque bytes that a decompressor reads. A default descriptor holds no bytes.
// Immutable after construction, so thread-safe.
#pragma once

#include <TarvikViewerDataTypes2/Export.h>

#include <TarvikDataProcessingCore/core/IValue.h>

#include <cstdint>
#include <vector>

class TVDT2_API CompressionDescriptor : public Tarvik::DataProcessing::Core::IValue
{
public:
    CompressionDescriptor();
    explicit CompressionDescriptor(std::vector<uint8_t> bytes);
    CompressionDescriptor(const CompressionDescriptor& other);
    CompressionDescriptor& operator=(const CompressionDescriptor& other);
    ~CompressionDescriptor() override;

    bool hasError(bool recursive) const override;
    std::shared_ptr<Tarvik::DataProcessing::Core::IError> getError(bool recursive) const override;

    const std::vector<uint8_t>& getCompressionDescriptor() const { return m_bytes; }

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override;
    void* getRawPointer() override;

private:
    std::vector<uint8_t> m_bytes;
};
