#include "graphfile.h"

#include <fstream>
#include <sstream>

namespace
{

Tarvik::DataProcessing::Core::Graph::PinRef pinRef(const std::string& text, const std::string& where)
{
    const size_t dot = text.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == text.size())
        throw GraphFileError(where + ": \"" + text + "\" is not of the form \"node.pin\"");
    return {text.substr(0, dot), text.substr(dot + 1)};
}

const nlohmann::json& member(const nlohmann::json& object, const char* key, const std::string& where)
{
    const auto found = object.find(key);
    if (found == object.end())
        throw GraphFileError(where + " has no \"" + key + "\"");
    return *found;
}

std::string stringMember(const nlohmann::json& object, const char* key, const std::string& where)
{
    const nlohmann::json& value = member(object, key, where);
    if (!value.is_string())
        throw GraphFileError(where + ": \"" + key + "\" is not a string");
    return value.get<std::string>();
}

} // namespace

GraphDescription GraphDescription::parse(const std::string& text, const std::string& origin)
{
    nlohmann::json root;
    try
    {
        root = nlohmann::json::parse(text);
    }
    // A syntax error, and also a number beyond a double's range, which is not one.
    catch (const nlohmann::json::exception& e)
    {
        throw GraphFileError(origin + " is not valid JSON: " + e.what());
    }
    if (!root.is_object())
        throw GraphFileError(origin + " is not a JSON object");
    GraphDescription graph;
    const nlohmann::json& nodes = member(root, "nodes", origin);
    if (!nodes.is_array() || nodes.empty())
        throw GraphFileError(origin + ": \"nodes\" is not an array of nodes");
    for (size_t i = 0; i < nodes.size(); ++i)
    {
        const std::string where = origin + ": node " + std::to_string(i + 1);
        if (!nodes[i].is_object())
            throw GraphFileError(where + " is not an object");
        Node node{stringMember(nodes[i], "name", where), stringMember(nodes[i], "module", where)};
        if (const auto settings = nodes[i].find("settings"); settings != nodes[i].end())
        {
            if (!settings->is_object())
                throw GraphFileError(where + ": \"settings\" is not an object");
            node.settings = *settings;
        }
        graph.nodes.push_back(std::move(node));
    }
    if (const auto edges = root.find("edges"); edges != root.end())
    {
        if (!edges->is_array())
            throw GraphFileError(origin + ": \"edges\" is not an array");
        for (size_t i = 0; i < edges->size(); ++i)
        {
            const std::string where = origin + ": edge " + std::to_string(i + 1);
            const nlohmann::json& edge = (*edges)[i];
            if (!edge.is_object())
                throw GraphFileError(where + " is not an object");
            graph.edges.push_back({pinRef(stringMember(edge, "from", where), where),
                                   pinRef(stringMember(edge, "to", where), where)});
        }
    }
    return graph;
}

GraphDescription GraphDescription::load(const std::string& fileName)
{
    std::ifstream file(fileName);
    if (!file)
        throw GraphFileError("cannot read the graph file " + fileName);
    std::ostringstream text;
    text << file.rdbuf();
    return parse(text.str(), fileName);
}

nlohmann::json GraphDescription::toJson() const
{
    nlohmann::json root = {{"nodes", nlohmann::json::array()}, {"edges", nlohmann::json::array()}};
    for (const Node& node : nodes)
        root["nodes"].push_back({{"name", node.name}, {"module", node.module}, {"settings", node.settings}});
    for (const Edge& edge : edges)
        root["edges"].push_back({{"from", edge.from.text()}, {"to", edge.to.text()}});
    return root;
}

nlohmann::json* GraphDescription::settingsOf(const std::string& name)
{
    for (Node& node : nodes)
        if (node.name == name)
            return &node.settings;
    return nullptr;
}
