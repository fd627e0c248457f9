// Shared set-up of the tests that drive the package's nodes through its exports.
#pragma once

#include "built_package.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <gtest/gtest.h>

#include <cstring>
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

} // namespace NodeTestSupport
