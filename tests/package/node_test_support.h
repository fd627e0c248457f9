// Shared set-up of the tests that drive the package's nodes through its exports.
#pragma once

#include "built_package.h"
#include "claiming_image.h"
#include "log_capture.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>
#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <GenApi/GenApi.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <functional>
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

// One node of the package, made through its exports and run on one update.
struct TestedNode
{
    explicit TestedNode(std::string nodeName, std::shared_ptr<Core::IResourcePool> pool = nullptr)
        : name(std::move(nodeName))
        , node(package.createNode(name, std::move(pool)))
    {
    }

    // What run() gives for the update, which must be the only one it names.
    Core::ValueMap run(Core::ValueMap inputs)
    {
        const Core::UpdateOutputs outputs = node->run(update, std::move(inputs));
        EXPECT_EQ(outputs.size(), 1u);
        return outputs.at(update);
    }

    // Loads settings that hold only what `fill` writes.
    void load(const std::function<void(Core::MemorySettings&)>& fill)
    {
        auto settings = std::make_shared<Core::MemorySettings>();
        fill(*settings);
        node->load(settings);
    }

    std::shared_ptr<Core::MemorySettings> saved()
    {
        auto settings = std::make_shared<Core::MemorySettings>();
        node->save(settings);
        return settings;
    }

    // Exactly one entry: "<Node> 0x<address>: TarvikViewerTessalPackage::<Node>::run failed.
    // Message: "<message>" (<source file>:<line>)" at severity 3 in the node's category,
    // matched exactly but for the address and the line, which become "#".
    void expectOneCheckLine(const LogCapture& log, const std::string& message) const
    {
        const auto entries = log.entries();
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(entries[0].severity, Utils::Severitiy_Error);
        EXPECT_EQ(entries[0].category, "tarvik.dataprocessing.tessal." + name);
        std::string sourceFile = name;
        for (char& c : sourceFile)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        std::string text = entries[0].text;
        const size_t address = std::min(text.find(" 0x"), text.size() - 3) + 3;
        text.replace(address, text.find(':', address) - address, "#");
        const size_t line = text.rfind(':') + 1;
        text.replace(line, text.size() - 1 - line, "#");
        EXPECT_EQ(text, name + " 0x#: TarvikViewerTessalPackage::" + name + "::run failed. Message: \"" +
                            message + "\" (src/tessals/tarvikviewertessalspackage/" + sourceFile + ".cpp:#)");
    }

    const std::string name;
    PackageLoader package{builtPackagePath()};
    std::shared_ptr<Core::INode> node;
    std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<TestUpdate>();
};

// The SharpnessExtractor's area of interest.
struct Aoi
{
    int64_t left;
    int64_t top;
    int64_t width;
    int64_t height;
};

// Loads settings that hold nothing but `aoi`, which only the SharpnessExtractor reads.
inline void loadAoi(TestedNode& node, const Aoi& aoi)
{
    node.load(
        [&](Core::MemorySettings& settings)
        {
            settings.setInt("AoiLeft", aoi.left);
            settings.setInt("AoiTop", aoi.top);
            settings.setInt("AoiWidth", aoi.width);
            settings.setInt("AoiHeight", aoi.height);
        });
}

// The pins of `outputs`, in their order.
inline std::vector<std::string> pinNames(const Core::ValueMap& outputs)
{
    std::vector<std::string> names;
    for (const auto& [pin, value] : outputs)
        names.push_back(pin.c_str());
    return names;
}

// The outputs must be exactly `pins`, each an error value with one description,
// which is returned.
inline std::string failureOf(const Core::ValueMap& outputs, const std::vector<std::string>& pins)
{
    EXPECT_EQ(pinNames(outputs), pins);
    std::string description;
    for (const auto& [pin, value] : outputs)
    {
        const auto error = value.get<Core::IValue>(true)->getError(false);
        if (!error)
        {
            ADD_FAILURE() << pin << " holds no error";
            continue;
        }
        if (description.empty())
            description = error->getDescription().c_str();
        EXPECT_EQ(error->getDescription().c_str(), description) << pin;
    }
    return description;
}

// A failure that begins with `prefix` and says more.
inline void expectReasonAfter(const std::string& prefix, const std::string& failure)
{
    EXPECT_TRUE(failure.starts_with(prefix)) << failure;
    EXPECT_GT(failure.size(), prefix.size()) << failure;
}

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

// An image that is nothing but `error`.
inline Utils::Variant errorImage(std::shared_ptr<Core::IError> error)
{
    Utils::Variant variant;
    variant.setData(Utils::COWPtr<Core::IImage>(new Core::Image(std::move(error), nullptr)));
    return variant;
}

inline std::shared_ptr<Core::IError> sensorFault()
{
    return std::make_shared<Core::InvalidValueError>("sensor fault", Utils::DateTime::now());
}

inline std::vector<uint8_t> bytesOf(const Core::IImage& image)
{
    const auto* const data = static_cast<const uint8_t*>(image.getImageData().data);
    return std::vector<uint8_t>(data, data + image.getImageSize());
}

} // namespace NodeTestSupport
