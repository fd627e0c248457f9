// The node-map tool: the features of a node's node maps as a client sees them
// (name, type, access mode, value, range, visibility), reading and writing a
// feature by name, and a node's settings saved to and loaded from a JSON file
// through the node's ISettings interface. An Aravis camera node has no node
// maps of its own; its camera's features take their place, in the map "camera".
//
// Every call goes through the node map, and so takes the node's lock there.
#pragma once

#include <TarvikDataProcessingCore/core/INode.h>

#include <string>
#include <vector>

struct FeatureRow
{
    std::string map;
    std::string name;
    std::string type;
    std::string access;
    std::string value;
    std::string range;
    std::string visibility;

    bool operator==(const FeatureRow&) const = default;
};

// Every feature of every node map of `node`, in the order of the maps and of
// their nodes; none for a node without node maps.
std::vector<FeatureRow> listFeatures(Tarvik::DataProcessing::Core::INode& node);

// The feature's value as text. Raises std::invalid_argument for an unknown
// feature; GenICam exceptions of the node map pass on (not readable, out of range).
std::string getFeature(Tarvik::DataProcessing::Core::INode& node, const std::string& name);
void setFeature(Tarvik::DataProcessing::Core::INode& node, const std::string& name, const std::string& value);

// The register description of each node map of `node`, each behind a comment
// line that names the map; nothing for a node without node maps.
std::string registerDescriptions(Tarvik::DataProcessing::Core::INode& node);

void saveSettings(Tarvik::DataProcessing::Core::INode& node, const std::string& fileName);
void loadSettings(Tarvik::DataProcessing::Core::INode& node, const std::string& fileName);

// The rows as an aligned table.
std::string featureTable(const std::vector<FeatureRow>& rows);
