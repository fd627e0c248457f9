// Arbitrary bytes as a graph file: the host must refuse them with a
// GraphFileError or read a graph that it writes back as the same graph, and
// that it builds from the package's nodes or refuses with a GraphFileError.
// Graphs that name a camera or image files are only read, not built: the
// fuzzer opens no devices and no files of its choosing.
#include "built_package.h"
#include "graphfile.h"
#include "modulecatalog.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const PackageLoader package(builtPackagePath());
    static const ModuleCatalog catalog(package);

    GraphDescription graph;
    try
    {
        graph = GraphDescription::parse(std::string(reinterpret_cast<const char*>(data), size), "fuzz.json");
    }
    catch (const GraphFileError&)
    {
        return 0;
    }
    const nlohmann::json written = graph.toJson();
    if (GraphDescription::parse(written.dump(), "written.json").toJson() != written)
        __builtin_trap();
    for (const GraphDescription::Node& node : graph.nodes)
        if (node.module == ModuleCatalog::aravisModule || node.module == ModuleCatalog::fileModule)
            return 0;
    Tarvik::DataProcessing::Core::Graph built;
    try
    {
        catalog.build(built, graph);
    }
    catch (const GraphFileError&)
    {
    }
    return 0;
}
