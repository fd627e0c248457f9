// An image that claims what a test or fuzzer says over bytes of its own, so that a
// node meets sizes, padding and types no real image has. Its error is one of a part
// of the image, which only the recursive question finds; the pixel type 0 throws an
// exception of neither family when asked for.
#pragma once

#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <memory>
#include <utility>
#include <vector>

namespace NodeTestSupport
{

using namespace Tarvik::DataProcessing;

class ClaimingImage : public Core::IImage
{
public:
    ClaimingImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                  std::vector<uint8_t> bytes, std::shared_ptr<Core::IError> innerError = nullptr)
        : m_type(type)
        , m_width(width)
        , m_height(height)
        , m_paddingX(paddingX)
        , m_bytes(std::move(bytes))
        , m_innerError(std::move(innerError))
    {
    }
    bool hasError(bool recursive) const override { return recursive && m_innerError; }
    std::shared_ptr<Core::IError> getError(bool) const override { return m_innerError; }
    Tarvik::EPixelType getPixelType() const override
    {
        if (m_type == 0)
            throw 42;
        return m_type;
    }
    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    size_t getImageSize() const override { return m_bytes.size(); }
    Core::ImageDataView<const void> getImageData() const override { return {m_bytes.data(), m_paddingX}; }
    Core::ImageDataView<void> getImageData() override { return {m_bytes.data(), m_paddingX}; }
    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Utils::TypeInfo::get<ClaimingImage>(mustExist);
    }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }

private:
    Tarvik::EPixelType m_type;
    uint32_t m_width;
    uint32_t m_height;
    size_t m_paddingX;
    std::vector<uint8_t> m_bytes;
    std::shared_ptr<Core::IError> m_innerError;
};

inline const Utils::TypeRegistrar<ClaimingImage, Utils::DirectBase<Core::IImage>,
                                  Utils::IndirectBase<Core::IValue>, Utils::IndirectBase<Utils::IObject>>
    claimingImageType("NodeTestSupport::ClaimingImage");

// A variant holding a ClaimingImage without padding over `bytes` bytes of 7.
inline Utils::Variant claimingImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t bytes,
                                    std::shared_ptr<Core::IError> innerError = nullptr)
{
    Utils::Variant variant;
    variant.setData(Utils::COWPtr<Core::IImage>(
        new ClaimingImage(type, width, height, 0, std::vector<uint8_t>(bytes, 7), std::move(innerError))));
    return variant;
}

} // namespace NodeTestSupport
