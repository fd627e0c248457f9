#include "modulecatalog.h"

#include "aravissource.h"
#include "displaysink.h"
#include "imagefilesource.h"

#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <TarvikBase/PixelTypeMapper.h>

using namespace Tarvik::DataProcessing;

namespace
{

template <typename T>
T setting(const nlohmann::json& settings, const char* key, T fallback, const std::string& node)
{
    const auto found = settings.find(key);
    if (found == settings.end())
        return fallback;
    try
    {
        return found->get<T>();
    }
    catch (const nlohmann::json::exception&)
    {
        throw GraphFileError("node '" + node + "': setting \"" + key + "\" has the wrong type");
    }
}

Tarvik::EPixelType pixelTypeNamed(const std::string& format, const std::string& node)
{
    const Tarvik::EPixelType type = Tarvik::CPixelTypeMapper::GetTarvikPixelTypeByName(format.c_str());
    if (type == Tarvik::PixelType_Undefined)
        throw GraphFileError("node '" + node + "': unknown pixel format \"" + format + "\"");
    return type;
}

SyntheticCameraSettings cameraSettings(const GraphDescription::Node& node)
{
    SyntheticCameraSettings camera;
    camera.width = setting<uint32_t>(node.settings, "Width", camera.width, node.name);
    camera.height = setting<uint32_t>(node.settings, "Height", camera.height, node.name);
    const std::string format = setting<std::string>(
        node.settings, "PixelFormat",
        Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(camera.pixelType).c_str(), node.name);
    camera.pixelType = pixelTypeNamed(format, node.name);
    camera.compressedShare =
        setting<double>(node.settings, "CompressedShare", camera.compressedShare, node.name);
    camera.failedShare = setting<double>(node.settings, "FailedShare", camera.failedShare, node.name);
    camera.truncatedShare =
        setting<double>(node.settings, "TruncatedShare", camera.truncatedShare, node.name);
    camera.corruptedShare =
        setting<double>(node.settings, "CorruptedShare", camera.corruptedShare, node.name);
    return camera;
}

ImageFileSettings imageFileSettings(const GraphDescription::Node& node)
{
    ImageFileSettings files;
    files.path = setting<std::string>(node.settings, "Path", "", node.name);
    if (files.path.empty())
        throw GraphFileError("node '" + node.name + "': setting \"Path\" names no file or folder");
    const std::string format = setting<std::string>(node.settings, "PixelFormat", "", node.name);
    if (!format.empty())
        files.rawPixelType = pixelTypeNamed(format, node.name);
    files.rawWidth = setting<uint32_t>(node.settings, "Width", 0, node.name);
    files.rawHeight = setting<uint32_t>(node.settings, "Height", 0, node.name);
    files.rawPaddingX = setting<size_t>(node.settings, "PaddingX", 0, node.name);
    return files;
}

AravisSettings aravisSettings(const GraphDescription::Node& node)
{
    AravisSettings camera;
    camera.camera = setting<std::string>(node.settings, "Camera", "", node.name);
    camera.width = setting<uint32_t>(node.settings, "Width", 0, node.name);
    camera.height = setting<uint32_t>(node.settings, "Height", 0, node.name);
    camera.pixelFormat = setting<std::string>(node.settings, "PixelFormat", "", node.name);
    camera.bufferCount = setting<unsigned>(node.settings, "BufferCount", camera.bufferCount, node.name);
    camera.bufferSize = setting<size_t>(node.settings, "BufferSize", camera.bufferSize, node.name);
    camera.timeoutMs = setting<unsigned>(node.settings, "TimeoutMs", camera.timeoutMs, node.name);
    camera.lostAfterTimeouts =
        setting<unsigned>(node.settings, "LostAfterTimeouts", camera.lostAfterTimeouts, node.name);
    camera.vanishAfterFrames =
        setting<uint64_t>(node.settings, "VanishAfterFrames", camera.vanishAfterFrames, node.name);
    camera.features = setting<nlohmann::json>(node.settings, "Features", camera.features, node.name);
    if (!camera.features.is_object())
        throw GraphFileError("node '" + node.name + "': setting \"Features\" is not an object");
    return camera;
}

nlohmann::json cameraJson(const SyntheticCameraSettings& camera)
{
    return {{"Width", camera.width},
            {"Height", camera.height},
            {"PixelFormat", Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(camera.pixelType).c_str()},
            {"CompressedShare", camera.compressedShare},
            {"FailedShare", camera.failedShare},
            {"TruncatedShare", camera.truncatedShare},
            {"CorruptedShare", camera.corruptedShare}};
}

} // namespace

ModuleCatalog::ModuleCatalog(const PackageLoader& package)
    : m_package(package)
{
}

bool ModuleCatalog::offers(const std::string& module) const
{
    if (module == cameraModule || module == fileModule || module == aravisModule || module == displayModule)
        return true;
    return m_package.hasModule(module) && m_package.symbol(("create_" + module).c_str()) &&
           m_package.symbol(("destroy_" + module).c_str());
}

std::vector<std::string> ModuleCatalog::moduleNames() const
{
    std::vector<std::string> names;
    for (const std::string& module : m_package.moduleNames())
        if (offers(module))
            names.push_back(module);
    names.emplace_back(cameraModule);
    names.emplace_back(fileModule);
    names.emplace_back(aravisModule);
    names.emplace_back(displayModule);
    return names;
}

std::shared_ptr<Core::INode> ModuleCatalog::create(const GraphDescription::Node& node,
                                                   const std::shared_ptr<Core::IResourcePool>& pool) const
{
    if (!offers(node.module))
    {
        std::string known;
        for (const std::string& module : moduleNames())
            known += (known.empty() ? "" : ", ") + module;
        throw GraphFileError("node '" + node.name + "': unknown module \"" + node.module +
                             "\" (known: " + known + ")");
    }
    try
    {
        if (node.module == cameraModule)
            return std::make_shared<SyntheticCamera>(pool, cameraSettings(node));
        if (node.module == fileModule)
            return std::make_shared<ImageFileSource>(pool, imageFileSettings(node));
        if (node.module == aravisModule)
            return std::make_shared<AravisSource>(pool, aravisSettings(node));
        if (node.module == displayModule)
            return std::make_shared<DisplaySink>(pool);
        std::shared_ptr<Core::INode> created = m_package.createNode(node.module, pool);
        auto settings = std::make_shared<Core::MemorySettings>();
        settings->fromJson(node.settings.dump());
        created->load(settings);
        return created;
    }
    catch (const GenICam::GenericException& e)
    {
        throw GraphFileError("node '" + node.name + "': " + e.GetDescription());
    }
    catch (const std::invalid_argument& e)
    {
        throw GraphFileError("node '" + node.name + "': " + e.what());
    }
}

void ModuleCatalog::build(Core::Graph& graph, const GraphDescription& description) const
{
    try
    {
        for (const GraphDescription::Node& node : description.nodes)
            graph.addNode(node.name, create(node, graph.resourcePool()));
        for (const GraphDescription::Edge& edge : description.edges)
            graph.connect(edge.from, edge.to);
        graph.build();
    }
    catch (const GenICam::GenericException& e)
    {
        throw GraphFileError(e.GetDescription());
    }
}

GraphDescription ModuleCatalog::defaultGraph(const DefaultGraphOptions& options) const
{
    GraphDescription graph;
    const auto add =
        [&](const char* name, const char* module, nlohmann::json settings = nlohmann::json::object())
    {
        if (!offers(module))
            return false;
        graph.nodes.push_back({name, module, std::move(settings)});
        return true;
    };
    const auto edge = [&](const std::string& from, const std::string& to)
    {
        const size_t fromDot = from.find('.');
        const size_t toDot = to.find('.');
        graph.edges.push_back({{from.substr(0, fromDot), from.substr(fromDot + 1)},
                               {to.substr(0, toDot), to.substr(toDot + 1)}});
    };
    const uint32_t width = options.camera.width;
    const uint32_t height = options.camera.height;

    const bool onAravis = !options.aravis.empty();
    if (onAravis)
        add("camera", aravisModule, options.aravis);
    else
        add("camera", cameraModule, cameraJson(options.camera));
    add("converter", "Converter");
    if (add("decompressor", "Decompressor", {{"FixImage", options.fixImage}}))
    {
        edge("camera.GrabResult", "decompressor.GrabResult");
        if (onAravis)
            edge("camera.StreamPayloadSize", "decompressor.RepairHintPayloadSizeStreamGrabber");
        else
            edge("camera.CompressionDescriptor", "decompressor.CompressionDescriptor");
        edge("camera.PixelFormat", "decompressor.RepairHintPixelFormat");
        edge("camera.Width", "decompressor.RepairHintWidth");
        edge("camera.Height", "decompressor.RepairHintHeight");
        edge("camera.PayloadSize", "decompressor.RepairHintPayloadSizeCamera");
        edge("decompressor.Image", "converter.Image");
    }
    else
        edge("camera.Image", "converter.Image");
    if (add("histogram", "HistogramExtractor"))
        edge("converter.Image", "histogram.Image");
    if (add("sharpness", "SharpnessExtractor",
            {{"AoiLeft", width / 4},
             {"AoiTop", height / 4},
             {"AoiWidth", width / 2},
             {"AoiHeight", height / 2}}))
        edge("converter.Image", "sharpness.Image");
    add("display", displayModule);
    std::string toDisplay = "converter.ImageConverted";
    if (add("gate", "Gate", {{"Enable", true}}))
    {
        edge(toDisplay, "gate.GenericInput");
        toDisplay = "gate.GenericOutput";
    }
    if (add("decoupler", "Decoupler", {{"ThrottleMode", true}, {"Fps", options.displayFps}}))
    {
        edge(toDisplay, "decoupler.GenericInput");
        toDisplay = "decoupler.GenericOutput";
    }
    edge(toDisplay, "display.Image");
    return graph;
}
