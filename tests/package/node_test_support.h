// Shared set-up of the tests that drive the package's nodes through its exports.
#pragma once

#include "built_package.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <GenApi/GenApi.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace NodeTestSupport
{

using namespace Tarvik::DataProcessing;

struct TestUpdate : Core::IGraphUpdate
{
    uint64_t getId() const override { return 1; }
    const std::vector<std::shared_ptr<IGraphUpdate>>& getParents() const override { return parents; }
    std::vector<std::shared_ptr<IGraphUpdate>> parents;
};

// The node's INodeMapContainer, found through the type registry as the framework finds it.
inline Core::INodeMapContainer* nodeMapContainer(Core::INode& node)
{
    return static_cast<Core::INodeMapContainer*>(Utils::type_cast(
        node.getRawPointer(), node.getTypeInfo(true), Utils::TypeInfo::get<Core::INodeMapContainer>(true)));
}

// The node's one node map, which must be named "@Tessal"; null after a failed expectation.
inline GenApi::INodeMap* tessalNodeMap(Core::INode& node)
{
    const auto maps = nodeMapContainer(node)->getNodeMaps();
    EXPECT_EQ(maps.size(), 1u);
    if (maps.size() != 1 || maps[0].first != "@Tessal")
    {
        ADD_FAILURE() << "no node map \"@Tessal\"";
        return nullptr;
    }
    return maps[0].second;
}

// The names of the features under "Root", in their order.
inline std::vector<std::string> rootFeatureNames(GenApi::INodeMap& nodeMap)
{
    GenApi::CCategoryPtr root = nodeMap.GetNode("Root");
    GenApi::FeatureList_t features;
    root->GetFeatures(features);
    std::vector<std::string> names;
    for (GenApi::IValue* feature : features)
        names.push_back(feature->GetNode()->GetName().c_str());
    return names;
}

// An image of `type` whose bytes (padding included) are `bytes`.
inline Utils::Variant imageVariant(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX,
                                   const std::vector<uint8_t>& bytes)
{
    Utils::COWPtr<Core::IImage> image(
        new Core::Image(bytes.data(), bytes.size(), type, width, height, paddingX, paddingX,
                        std::make_shared<Core::AlignedBufferProvider>(), nullptr));
    Utils::Variant variant;
    variant.setData(std::move(image));
    return variant;
}

inline std::vector<uint8_t> bytesOf(const Core::IImage& image)
{
    const auto* const data = static_cast<const uint8_t*>(image.getImageData().data);
    return std::vector<uint8_t>(data, data + image.getImageSize());
}

// An image that claims what the test says over bytes of the test's own, so that a
// node meets sizes and types no real image has. Its error is one of a part of the
// image, which only the recursive question finds; the pixel type 0 throws an
// exception of neither family when asked for.
class ClaimingImage : public Core::IImage
{
public:
    ClaimingImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, std::vector<uint8_t> bytes,
                  std::shared_ptr<Core::IError> innerError = nullptr)
        : m_type(type)
        , m_width(width)
        , m_height(height)
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
    Core::ImageDataView<const void> getImageData() const override { return {m_bytes.data(), 0}; }
    Core::ImageDataView<void> getImageData() override { return {m_bytes.data(), 0}; }
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
    std::vector<uint8_t> m_bytes;
    std::shared_ptr<Core::IError> m_innerError;
};

inline const Utils::TypeRegistrar<ClaimingImage, Utils::DirectBase<Core::IImage>,
                                  Utils::IndirectBase<Core::IValue>, Utils::IndirectBase<Utils::IObject>>
    claimingImageType("NodeTestSupport::ClaimingImage");

inline Utils::Variant claimingImage(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t bytes,
                                    std::shared_ptr<Core::IError> innerError = nullptr)
{
    Utils::Variant variant;
    variant.setData(Utils::COWPtr<Core::IImage>(
        new ClaimingImage(type, width, height, std::vector<uint8_t>(bytes, 7), std::move(innerError))));
    return variant;
}

} // namespace NodeTestSupport
