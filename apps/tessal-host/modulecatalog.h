// The modules a graph can name: the package's, made through its exports, and the
// host's own frame source and display. Builds graphs from their descriptions,
// and the default graph from what the package offers.
#pragma once

#include "graphfile.h"
#include "packageloader.h"
#include "syntheticcamera.h"

#include <TarvikDataProcessingCore/graph/Graph.h>

#include <memory>
#include <string>
#include <vector>

struct DefaultGraphOptions
{
    SyntheticCameraSettings camera;
    bool fixImage = true;
    double displayFps = 25.0;
    // Settings of an Aravis camera as the source in place of the synthetic
    // camera, when not empty; `camera.width` and `camera.height` give the
    // Sharpness AOI, and should be the camera's.
    nlohmann::json aravis;
};

class ModuleCatalog
{
public:
    static constexpr const char* cameraModule = "SyntheticCamera";
    static constexpr const char* fileModule = "ImageFiles";
    static constexpr const char* aravisModule = "AravisCamera";
    static constexpr const char* displayModule = "Display";

    explicit ModuleCatalog(const PackageLoader& package);

    // True when the package has the module's factory, or the host has the module.
    bool offers(const std::string& module) const;
    std::vector<std::string> moduleNames() const;

    // A node of the description's module with its settings loaded, made with
    // `pool`; raises GraphFileError naming the node for an unknown module or bad settings.
    std::shared_ptr<Tarvik::DataProcessing::Core::INode>
    create(const GraphDescription::Node& node,
           const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& pool) const;

    // Adds every node and edge of `description` to `graph` and builds it; raises
    // GraphFileError with the graph's message when an edge is refused.
    void build(Tarvik::DataProcessing::Core::Graph& graph, const GraphDescription& description) const;

    // Camera, Decompressor (with the camera's hints), Converter, then
    // HistogramExtractor and SharpnessExtractor, a Gate, and a Decoupler in
    // front of the display, each node as the package offers it.
    GraphDescription defaultGraph(const DefaultGraphOptions& options) const;

private:
    const PackageLoader& m_package;
};
