// Shared set-up of the tests that drive the package's nodes through its exports.
#pragma once

#include "built_package.h"
#include "claiming_image.h"
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

} // namespace NodeTestSupport
