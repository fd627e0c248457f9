#include "nodemaptool.h"

#include "aravissource.h"

#include <TarvikDataProcessingCore/core/INodeMapContainer.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <GenApi/AccessModeHelpers.h>
#include <GenApi/DocumentText.h>
#include <GenApi/GenApi.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

using namespace Tarvik::DataProcessing;

namespace
{

using NodeMaps = std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>>;

NodeMaps nodeMapsOf(Core::INode& node)
{
    auto* const container = static_cast<Core::INodeMapContainer*>(Utils::type_cast(
        node.getRawPointer(), node.getTypeInfo(false), Utils::TypeInfo::get<Core::INodeMapContainer>(false)));
    return container ? container->getNodeMaps() : NodeMaps{};
}

const char* typeName(GenApi::EInterfaceType type)
{
    switch (type)
    {
    case GenApi::intfIInteger:
        return "Integer";
    case GenApi::intfIBoolean:
        return "Boolean";
    case GenApi::intfICommand:
        return "Command";
    case GenApi::intfIFloat:
        return "Float";
    case GenApi::intfIString:
        return "String";
    case GenApi::intfIRegister:
        return "Register";
    case GenApi::intfIEnumeration:
        return "Enumeration";
    default:
        return "Value";
    }
}

const char* accessName(GenApi::EAccessMode mode)
{
    static const char* const names[] = {"NI", "NA", "WO", "RO", "RW"};
    return mode <= GenApi::RW ? names[mode] : "?";
}

const char* visibilityName(GenApi::EVisibility visibility)
{
    static const char* const names[] = {"Beginner", "Expert", "Guru", "Invisible"};
    return visibility <= GenApi::Invisible ? names[visibility] : "?";
}

std::string rangeOf(GenApi::INode& node)
{
    char text[96];
    if (auto* const integer = dynamic_cast<GenApi::IInteger*>(&node); integer && GenApi::IsReadable(integer))
    {
        std::snprintf(text, sizeof text, "%lld..%lld step %lld", static_cast<long long>(integer->GetMin()),
                      static_cast<long long>(integer->GetMax()), static_cast<long long>(integer->GetInc()));
        return text;
    }
    if (auto* const real = dynamic_cast<GenApi::IFloat*>(&node); real && GenApi::IsReadable(real))
    {
        std::snprintf(text, sizeof text, "%g..%g", real->GetMin(), real->GetMax());
        return text;
    }
    if (auto* const enumeration = dynamic_cast<GenApi::IEnumeration*>(&node))
    {
        GenApi::StringList_t symbolics;
        enumeration->GetSymbolics(symbolics);
        std::string list;
        for (const auto& symbolic : symbolics)
        {
            if (!list.empty())
                list += '|';
            list += symbolic.c_str();
        }
        return list;
    }
    return "";
}

// An Aravis camera shows its own features beside the node maps.
AravisSource* cameraOf(Core::INode& node)
{
    return dynamic_cast<AravisSource*>(&node);
}

GenApi::IValue& featureOf(Core::INode& node, const std::string& name)
{
    for (const auto& [mapName, map] : nodeMapsOf(node))
        if (GenApi::INode* const feature = map ? map->GetNode(name.c_str()) : nullptr)
            if (auto* const value = dynamic_cast<GenApi::IValue*>(feature))
                return *value;
    throw std::invalid_argument("the node has no feature \"" + name + "\"");
}

} // namespace

std::vector<FeatureRow> listFeatures(Core::INode& node)
{
    std::vector<FeatureRow> rows;
    for (const auto& [mapName, map] : nodeMapsOf(node))
    {
        if (!map)
            continue;
        GenApi::NodeList_t nodes;
        map->GetNodes(nodes);
        for (GenApi::INode* const feature : nodes)
        {
            auto* const value = dynamic_cast<GenApi::IValue*>(feature);
            if (!value || !feature->IsFeature())
                continue;
            rows.push_back({mapName.c_str(), feature->GetName().c_str(),
                            typeName(feature->GetPrincipalInterfaceType()),
                            accessName(feature->GetAccessMode()),
                            GenApi::IsReadable(feature) ? value->ToString().c_str() : "", rangeOf(*feature),
                            visibilityName(feature->GetVisibility())});
        }
    }
    if (const AravisSource* const camera = cameraOf(node))
    {
        const std::vector<FeatureRow> cameraRows = camera->listFeatures();
        rows.insert(rows.end(), cameraRows.begin(), cameraRows.end());
    }
    return rows;
}

std::string registerDescriptions(Core::INode& node)
{
    std::string text;
    for (const auto& [mapName, map] : nodeMapsOf(node))
        text += std::string("<!-- node map \"") + mapName.c_str() + "\" -->\n" +
                GenApi::GetDocumentText(map).c_str() + "\n";
    if (const AravisSource* const camera = cameraOf(node))
        text += "<!-- node map \"camera\" -->\n" + camera->registerDescription() + "\n";
    return text;
}

std::string getFeature(Core::INode& node, const std::string& name)
{
    if (const AravisSource* const camera = cameraOf(node))
        return camera->getFeature(name);
    return featureOf(node, name).ToString().c_str();
}

void setFeature(Core::INode& node, const std::string& name, const std::string& value)
{
    if (AravisSource* const camera = cameraOf(node))
        return camera->setFeature(name, value);
    featureOf(node, name).FromString(value.c_str());
}

void saveSettings(Core::INode& node, const std::string& fileName)
{
    std::filesystem::remove(fileName);
    node.save(std::make_shared<Core::JsonFileSettings>(fileName));
}

void loadSettings(Core::INode& node, const std::string& fileName)
{
    if (!std::filesystem::exists(fileName))
        throw std::invalid_argument("no settings file " + fileName);
    node.load(std::make_shared<Core::JsonFileSettings>(fileName));
}

std::string featureTable(const std::vector<FeatureRow>& rows)
{
    std::vector<FeatureRow> table = {{"map", "feature", "type", "access", "value", "range", "visibility"}};
    table.insert(table.end(), rows.begin(), rows.end());
    size_t widths[6] = {};
    for (const FeatureRow& row : table)
    {
        const std::string* const fields[] = {&row.map,    &row.name,  &row.type,
                                             &row.access, &row.value, &row.range};
        for (size_t i = 0; i < 6; ++i)
            widths[i] = std::max(widths[i], fields[i]->size());
    }
    std::string text;
    for (const FeatureRow& row : table)
    {
        const std::string* const fields[] = {&row.map,    &row.name,  &row.type,
                                             &row.access, &row.value, &row.range};
        for (size_t i = 0; i < 6; ++i)
            text += *fields[i] + std::string(widths[i] - fields[i]->size() + 2, ' ');
        text += row.visibility + "\n";
    }
    return text;
}
