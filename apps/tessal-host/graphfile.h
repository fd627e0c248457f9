// Graph files: a small JSON text that names the nodes of a graph by module, with
// their settings, and joins their pins by name:
//
//   {"nodes": [{"name": "cam", "module": "SyntheticCamera", "settings": {"Width": 640}},
//              {"name": "conv", "module": "Converter"}],
//    "edges": [{"from": "cam.Image", "to": "conv.Image"}]}
//
// The default graph is the same structure, made in code from what the package offers.
#pragma once

#include <TarvikDataProcessingCore/graph/Graph.h>

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <vector>

// A graph file or a graph that cannot be built: the message says where and why.
class GraphFileError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct GraphDescription
{
    struct Node
    {
        std::string name;
        std::string module;
        nlohmann::json settings = nlohmann::json::object();
    };
    struct Edge
    {
        Tarvik::DataProcessing::Core::Graph::PinRef from;
        Tarvik::DataProcessing::Core::Graph::PinRef to;
    };

    std::vector<Node> nodes;
    std::vector<Edge> edges;

    // Raises GraphFileError naming `origin` (a file name) and the fault.
    static GraphDescription parse(const std::string& text, const std::string& origin);
    static GraphDescription load(const std::string& fileName);
    nlohmann::json toJson() const;
    // The node's settings; a null pointer when there is no node of that name.
    nlohmann::json* settingsOf(const std::string& name);
};
