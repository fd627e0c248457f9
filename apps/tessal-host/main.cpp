// tessal-host: the viewer's stand-in. It loads the package through its exports
// and runs graphs of its nodes on frames of its synthetic camera or of image files.
//
//   tessal-host run GRAPH.json [--frames N] [--output DIR]   a graph file
//   tessal-host demo [--frames N] [--output DIR]             the default graph
//   tessal-host demo --camera Fake_1                         ... on an Aravis camera
//   tessal-host soak [--minutes M] [--frames N] [--json F]   the default graph under load
//   tessal-host nodemap (--module M | --graph G --node N | --camera C) [--load F]
//                       [list | get X | set X V | xml] [--save F]
//
// The package is looked for beside the host (../lib), unless --package or the
// environment variable TESSAL_PACKAGE names it. Exit codes: 0 done, 1 a frame or
// node failed as reported, 2 bad command line or graph file, 3 the package or a
// source could not be opened, 4 a camera was lost during the run.
#include "hostrun.h"
#include "modulecatalog.h"
#include "nodemaptool.h"
#include "packageloader.h"
#include "soakrun.h"
#include "sourceerror.h"

#include <GCBase/GCException.h>

#include <CLI/CLI.hpp>

#include <TarvikBase/PixelTypeMapper.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{

std::string defaultPackagePath()
{
    if (const char* fromEnvironment = std::getenv("TESSAL_PACKAGE"))
        return fromEnvironment;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    return (self.parent_path().parent_path() / "lib" / "libTarvikViewerTessalPackage.so").string();
}

void addRunOptions(CLI::App& command, RunOptions& options, std::string& output)
{
    command.add_option("-n,--frames", options.frames, "Frames to run")->capture_default_str();
    command.add_option("-o,--output", output,
                       "Folder for the run's outputs (default: tessal-runs/<command>-<time>)");
    command
        .add_option("--png-every", options.pngEvery, "Write every Nth displayed frame as PNG, and the last")
        ->capture_default_str();
    command.add_flag("-q,--quiet", options.quiet, "Print no progress and no summary");
}

struct NodemapOptions
{
    std::string module;
    std::string camera;
    bool onCamera = false;
    std::string graph;
    std::string node;
    std::string load;
    std::string save;
    std::string feature;
    std::string value;
    bool get = false;
    bool set = false;
    bool xml = false;
};

// Lists, reads or writes the features of one node: a fresh node of a module,
// or a node of a built graph ("default" names the default graph), or an Aravis
// camera, whose own features are listed under "camera".
int nodemapCommand(const ModuleCatalog& catalog, const NodemapOptions& options)
{
    Tarvik::DataProcessing::Core::Graph graph;
    std::shared_ptr<Tarvik::DataProcessing::Core::INode> node;
    if (!options.module.empty())
        node = catalog.create({"node", options.module, nlohmann::json::object()}, graph.resourcePool());
    else if (options.onCamera)
        node = catalog.create({"camera", ModuleCatalog::aravisModule, {{"Camera", options.camera}}},
                              graph.resourcePool());
    else
    {
        if (options.graph.empty() || options.node.empty())
            throw GraphFileError("nodemap needs --module, --camera, or --graph and --node");
        catalog.build(graph, options.graph == "default" ? catalog.defaultGraph({})
                                                        : GraphDescription::load(options.graph));
        node = graph.node(options.node);
        if (!node)
            throw GraphFileError("the graph has no node '" + options.node + "'");
    }
    if (!options.load.empty())
        loadSettings(*node, options.load);
    try
    {
        if (options.set)
            setFeature(*node, options.feature, options.value);
        if (options.get || options.set)
            std::printf("%s = %s\n", options.feature.c_str(), getFeature(*node, options.feature).c_str());
        else if (options.xml)
            std::printf("%s", registerDescriptions(*node).c_str());
        else
            std::printf("%s", featureTable(listFeatures(*node)).c_str());
    }
    catch (const GenICam::GenericException& e)
    {
        // The node map refused the request: a value out of range, a feature not writable.
        throw std::invalid_argument(e.GetDescription());
    }
    if (!options.save.empty())
        saveSettings(*node, options.save);
    return int{exitDone};
}

int execute(const std::function<int()>& body)
{
    try
    {
        return body();
    }
    catch (const PackageError& e)
    {
        std::fprintf(stderr, "tessal-host: %s\n", e.what());
        return exitCannotOpen;
    }
    catch (const SourceError& e)
    {
        std::fprintf(stderr, "tessal-host: %s\n", e.what());
        return exitCannotOpen;
    }
    catch (const GraphFileError& e)
    {
        std::fprintf(stderr, "tessal-host: %s\n", e.what());
        return exitBadInput;
    }
    catch (const std::invalid_argument& e)
    {
        std::fprintf(stderr, "tessal-host: %s\n", e.what());
        return exitBadInput;
    }
    catch (const GenICam::GenericException& e)
    {
        std::fprintf(stderr, "tessal-host: %s\n", e.GetDescription());
    }
    catch (const std::exception& e)
    {
        std::fprintf(stderr, "tessal-host: %s\n", e.what());
    }
    return exitFailed;
}

} // namespace

int main(int argc, char** argv)
{
    CLI::App app{"tessal-host: loads the Tessal package through its exports and runs camera graphs"};
    app.require_subcommand(1);
    std::string packagePath = defaultPackagePath();
    app.add_option("--package", packagePath, "The package library to load")->capture_default_str();

    RunOptions runOptions;
    std::string output;
    std::string graphFile;
    CLI::App* const run = app.add_subcommand("run", "Run a graph file on its frame sources");
    run->add_option("graph", graphFile, "The graph file (JSON)")->required();
    addRunOptions(*run, runOptions, output);

    DefaultGraphOptions demoOptions;
    demoOptions.camera = {1920, 1200, Tarvik::PixelType_BayerRG8, 0.1, 0.05};
    std::string demoFormat = "BayerRG8";
    RunOptions demoRun;
    demoRun.frames = 300;
    std::string demoOutput;
    CLI::App* const demo = app.add_subcommand("demo", "Run the default graph on the synthetic camera");
    addRunOptions(*demo, demoRun, demoOutput);
    demo->add_option("--width", demoOptions.camera.width, "Frame width")->capture_default_str();
    demo->add_option("--height", demoOptions.camera.height, "Frame height")->capture_default_str();
    demo->add_option("--pixel-format", demoFormat, "Pixel format of the camera")->capture_default_str();
    demo->add_option("--compressed-share", demoOptions.camera.compressedShare, "Share of compressed frames")
        ->capture_default_str()
        ->check(CLI::Range(0.0, 1.0));
    demo->add_option("--failed-share", demoOptions.camera.failedShare, "Share of failed frames")
        ->capture_default_str()
        ->check(CLI::Range(0.0, 1.0));
    std::string aravisCamera;
    CLI::Option* const formatOption = demo->get_option("--pixel-format");
    demo->add_option("--camera", aravisCamera,
                     "Run on this Aravis camera (\"Fake_1\": Aravis' fake camera; \"\" the first found) "
                     "instead of the synthetic one; --width, --height and --pixel-format are written to it");
    bool noFixImage = false;
    demo->add_flag("--no-fix-image", noFixImage, "Leave failed frames unrepaired (\"FixImage\" off)");
    demo->add_option("--display-fps", demoOptions.displayFps, "Rate limit of the display's Decoupler")
        ->capture_default_str();
    demo->add_option("--print-graph", graphFile,
                     "Write the default graph as a graph file to this path and stop");

    NodemapOptions nodemapOptions;
    CLI::App* const nodemap = app.add_subcommand(
        "nodemap", "List, get and set the node-map features of a node or a camera; save and load a node's "
                   "settings");
    nodemap->add_option("--module", nodemapOptions.module, "A fresh node of this module");
    nodemap->add_option("--camera", nodemapOptions.camera,
                        "The features of this Aravis camera (\"\": the first found). A real camera keeps "
                        "what is written until it is powered off; \"Fake_1\" starts afresh in each process");
    nodemap->add_option("--graph", nodemapOptions.graph,
                        "A graph file, or \"default\" for the default graph");
    nodemap->add_option("--node", nodemapOptions.node, "The node of the graph");
    nodemap->add_option("--load", nodemapOptions.load, "Load the node's settings from this JSON file first");
    nodemap->add_option("--save", nodemapOptions.save, "Save the node's settings to this JSON file last");
    nodemap->fallthrough();
    nodemap->require_subcommand(0, 1);
    nodemap->add_subcommand("list", "List the features (the default)");
    CLI::App* const get = nodemap->add_subcommand("get", "Print a feature's value");
    get->add_option("feature", nodemapOptions.feature, "The feature")->required();
    CLI::App* const set = nodemap->add_subcommand("set", "Write a feature, then print it");
    set->add_option("feature", nodemapOptions.feature, "The feature")->required();
    set->add_option("value", nodemapOptions.value, "The value, as text")->required();
    CLI::App* const xml = nodemap->add_subcommand("xml", "Print the register description of each node map");

    SoakOptions soakOptions;
    double soakMinutes = soakOptions.seconds / 60.0;
    std::string soakFormat = "BayerRG8";
    std::string soakJson;
    bool soakQuiet = false;
    CLI::App* const soak = app.add_subcommand(
        "soak",
        "Run the default graph under load: damaged frames, node-map writes and restarts from a second "
        "thread; fail if a frame is unaccounted for or memory grows after the warm-up");
    soak->add_option("-m,--minutes", soakMinutes, "How long to run")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    soak->add_option("-n,--frames", soakOptions.frames, "End after this many frames if sooner (0: no limit)")
        ->capture_default_str();
    soak->add_option("--width", soakOptions.camera.width, "Frame width")->capture_default_str();
    soak->add_option("--height", soakOptions.camera.height, "Frame height")->capture_default_str();
    soak->add_option("--pixel-format", soakFormat, "Pixel format of the camera")->capture_default_str();
    soak->add_option("--restart-every", soakOptions.restartEvery,
                     "Restart the graph after so many node-map writes")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    soak->add_option("--seed", soakOptions.seed, "Seed of the second thread's choices")
        ->capture_default_str();
    soak->add_option("--json", soakJson, "Write the report as JSON to this file too");
    soak->add_flag("-q,--quiet", soakQuiet, "Show no progress line");

    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& e)
    {
        const int code = app.exit(e);
        return code == 0 ? exitDone : exitBadInput;
    }

    return execute(
        [&]
        {
            const PackageLoader package(packagePath);
            const ModuleCatalog catalog(package);
            if (*nodemap)
            {
                nodemapOptions.get = get->parsed();
                nodemapOptions.set = set->parsed();
                nodemapOptions.xml = xml->parsed();
                nodemapOptions.onCamera = nodemap->count("--camera") > 0;
                return nodemapCommand(catalog, nodemapOptions);
            }
            if (*soak)
            {
                soakOptions.seconds = soakMinutes * 60.0;
                soakOptions.progress = !soakQuiet;
                soakOptions.camera.pixelType =
                    Tarvik::CPixelTypeMapper::GetTarvikPixelTypeByName(soakFormat.c_str());
                if (soakOptions.camera.pixelType == Tarvik::PixelType_Undefined)
                    throw GraphFileError("unknown pixel format \"" + soakFormat + "\"");
                std::printf("Soak of the default graph: %ux%u %s, %.1f minutes, seed %llu\n",
                            soakOptions.camera.width, soakOptions.camera.height, soakFormat.c_str(),
                            soakMinutes, static_cast<unsigned long long>(soakOptions.seed));
                std::fflush(stdout);
                const SoakReport report = runSoak(catalog, soakOptions);
                std::printf("%s", report.text().c_str());
                if (!soakJson.empty() && !(std::ofstream(soakJson) << report.toJson().dump(2) << "\n"))
                    throw std::runtime_error("cannot write " + soakJson);
                return report.passed() ? int{exitDone} : int{exitFailed};
            }
            if (*run)
            {
                runOptions.outputFolder =
                    output.empty() ? defaultOutputFolder("run") : std::filesystem::path(output);
                return runGraph(catalog, GraphDescription::load(graphFile), runOptions);
            }
            demoOptions.camera.pixelType =
                Tarvik::CPixelTypeMapper::GetTarvikPixelTypeByName(demoFormat.c_str());
            if (demoOptions.camera.pixelType == Tarvik::PixelType_Undefined)
                throw GraphFileError("unknown pixel format \"" + demoFormat + "\"");
            demoOptions.fixImage = !noFixImage;
            if (demo->count("--camera"))
            {
                demoOptions.aravis = {{"Camera", aravisCamera},
                                      {"Width", demoOptions.camera.width},
                                      {"Height", demoOptions.camera.height}};
                if (formatOption->count())
                    demoOptions.aravis["PixelFormat"] = demoFormat;
            }
            const GraphDescription graph = catalog.defaultGraph(demoOptions);
            if (!graphFile.empty())
            {
                std::FILE* const file = std::fopen(graphFile.c_str(), "w");
                if (!file)
                    throw std::runtime_error("cannot write " + graphFile);
                std::fprintf(file, "%s\n", graph.toJson().dump(2).c_str());
                std::fclose(file);
                return int{exitDone};
            }
            demoRun.outputFolder =
                demoOutput.empty() ? defaultOutputFolder("demo") : std::filesystem::path(demoOutput);
            std::printf("Package %s: modules", package.path().c_str());
            for (const std::string& module : catalog.moduleNames())
                std::printf(" %s", module.c_str());
            std::printf("\nDefault graph on %s, %ux%u %s, %llu frames\n",
                        demoOptions.aravis.empty() ? "the synthetic camera"
                                                   : ("camera \"" + aravisCamera + "\"").c_str(),
                        demoOptions.camera.width, demoOptions.camera.height,
                        formatOption->count() || demoOptions.aravis.empty() ? demoFormat.c_str()
                                                                            : "(camera's format)",
                        static_cast<unsigned long long>(demoRun.frames));
            return runGraph(catalog, graph, demoRun);
        });
}
