// Arbitrary bytes as a settings file: the store must refuse a text that is not a
// JSON object, and every node with settings must then load what it holds, or
// refuse a value of the wrong type with a GenICam exception. Whatever was
// loaded, every feature of the node's node map reads, and a save, load and save
// again gives the same settings.
#include "built_package.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/INodeMapContainer.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <GenApi/GenApi.h>

#include <string>

using namespace Tarvik::DataProcessing;

namespace
{

// The node map of node, found through the type registry as the framework finds it.
GenApi::INodeMap& nodeMapOf(Core::INode& node)
{
    auto* const container = static_cast<Core::INodeMapContainer*>(Utils::type_cast(
        node.getRawPointer(), node.getTypeInfo(true), Utils::TypeInfo::get<Core::INodeMapContainer>(true)));
    return *container->getNodeMaps().at(0).second;
}

std::string savedSettings(Core::INode& node)
{
    const auto settings = std::make_shared<Core::MemorySettings>();
    node.save(settings);
    return settings->toJson();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static PackageLoader package(builtPackagePath());
    static const std::shared_ptr<Core::INode> nodes[] = {
        package.createNode("Gate"), package.createNode("Decoupler"), package.createNode("Decompressor"),
        package.createNode("SharpnessExtractor")};

    const auto settings = std::make_shared<Core::MemorySettings>();
    try
    {
        settings->fromJson(std::string(reinterpret_cast<const char*>(data), size));
    }
    catch (const GenICam::GenericException&)
    {
        return 0;
    }
    for (const auto& node : nodes)
    {
        try
        {
            node->load(settings);
        }
        catch (const GenICam::GenericException&)
        {
            // A value of the wrong type; what was loaded before it stays.
        }
        GenApi::NodeList_t features;
        nodeMapOf(*node).GetNodes(features);
        for (GenApi::INode* feature : features)
            if (GenApi::CValuePtr value = feature; value.IsValid() && GenApi::IsReadable(value))
                value->ToString();
        const std::string saved = savedSettings(*node);
        auto reloaded = std::make_shared<Core::MemorySettings>();
        reloaded->fromJson(saved);
        node->load(reloaded);
        if (savedSettings(*node) != saved)
            __builtin_trap();
    }
    return 0;
}
