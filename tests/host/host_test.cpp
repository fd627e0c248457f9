// The host as a whole: the default graph on the synthetic camera, its outputs,
// graph files and packages that must be refused, and the exit codes.
#include "host_command.h"
#include "hostrun.h"
#include "nodemaptool.h"
#include "package_graph.h"

#include <TarvikDataProcessingCore/core/IImage.h>

#include <nlohmann/json.hpp>

#include <cstring>

using namespace Tarvik::DataProcessing;
using testing::HasSubstr;

namespace
{

constexpr uint32_t width = 64;
constexpr uint32_t height = 48;
const char* const brokenFrameError = "Grab result could not be decompressed/repaired. Reason: Grab result is "
                                     "broken but fix image is set to false.";

class HostRun : public PackageGraph
{
protected:
    DefaultGraphOptions options(bool fixImage) const
    {
        DefaultGraphOptions options;
        options.camera = {width, height, Tarvik::PixelType_BayerRG8, 0.25, 0.25};
        options.fixImage = fixImage;
        return options;
    }
};

} // namespace

TEST_F(HostRun, DefaultGraphLeavesFiguresThatAddUpAndARisingSharpness)
{
    const std::filesystem::path folder = freshFolder("default");
    RunOptions run;
    run.frames = SyntheticScene::focusPeriod / 2 + 1;
    run.outputFolder = folder;
    run.pngEvery = 20;
    run.quiet = true;
    ASSERT_EQ(runGraph(catalog, catalog.defaultGraph(options(true)), run), exitDone);

    const auto rows = csvRows(folder / "figures.csv");
    ASSERT_EQ(rows.size(), run.frames);
    std::map<std::string, int> statuses;
    std::vector<double> sharpness;
    for (const auto& row : rows)
    {
        ASSERT_EQ(row.size(), 8u);
        ++statuses[row[1]];
        sharpness.push_back(std::stod(row[2]));
        EXPECT_EQ(std::stoull(row[3]) + std::stoull(row[4]) + std::stoull(row[5]), width * height) << row[0];
        EXPECT_EQ(row[7], "") << row[0];
    }
    EXPECT_GT(statuses["compressed"], 0);
    EXPECT_GT(statuses["failed"], 0);
    // Frame 0 is the most blurred, the last one sharp.
    EXPECT_LT(sharpness.front(), sharpness[sharpness.size() / 2]);
    EXPECT_LT(sharpness[sharpness.size() / 2], sharpness.back());

    uint64_t redCount = 0;
    for (const auto& row : csvRows(folder / "histogram-Red.csv"))
        redCount += std::stoull(row[1]);
    EXPECT_EQ(redCount, width * height / 4);
    const auto summary = nlohmann::json::parse(std::ifstream(folder / "summary.json"));
    EXPECT_EQ(summary["frames"], run.frames);
    for (const auto& node : summary["nodes"])
    {
        // The display runs on what the Decoupler lets through; the first value goes at once.
        if (node["name"] == "display")
            EXPECT_GE(node["framesIn"], 1u);
        else
            EXPECT_EQ(node["framesIn"], run.frames) << node["name"];
    }
    std::stringstream report;
    report << std::ifstream(folder / "report.html").rdbuf();
    EXPECT_NE(report.str().find("<svg"), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(folder / "frames/000000.png"));
}

// What the Decompressor gives, frame by frame, against the frame the camera
// rendered: compressed frames bit-exact, failed frames repaired or refused.
TEST_F(HostRun, DecompressedAndRepairedFramesMatchTheRenderedOnes)
{
    for (const bool fixImage : {true, false})
    {
        build(catalog.defaultGraph(options(fixImage)));
        const auto* const camera = dynamic_cast<SyntheticCamera*>(graph->node("camera").get());
        ASSERT_NE(camera, nullptr);
        run(8,
            [&](uint64_t frame)
            {
                const auto rendered = lastValue("camera");
                const auto decompressed = lastValue("decompressor");
                if (!fixImage && camera->kindOf(frame) == SyntheticCamera::FrameKind::Failed)
                {
                    ASSERT_TRUE(decompressed->hasError(false)) << frame;
                    EXPECT_STREQ(decompressed->getError(false)->getDescription().c_str(), brokenFrameError);
                    return;
                }
                ASSERT_FALSE(decompressed->hasError(false)) << frame;
                ASSERT_EQ(decompressed->getImageSize(), rendered->getImageSize());
                EXPECT_EQ(std::memcmp(decompressed->getImageData().data, rendered->getImageData().data,
                                      rendered->getImageSize()),
                          0)
                    << "frame " << frame << " (" << camera->frameStatus(frame) << ")";
            });
        EXPECT_EQ(graph->statistics("decompressor").errorCount(), fixImage ? 0u : 2u);
    }
}

TEST(HostCommands, RefuseBadGraphFilesAndPackagesWithClearMessagesAndEndWithTheirCodes)
{
    const std::filesystem::path folder = freshFolder("commands");
    std::filesystem::create_directories(folder);
    const std::string camera =
        R"({"name": "cam", "module": "SyntheticCamera", "settings": {"Width": 32, "Height": 16}})";
    const struct
    {
        const char* name;
        std::string text;
        const char* message;
    } graphs[] = {
        {"bad-json", "{\"nodes\": [", "is not valid JSON"},
        {"no-nodes", R"({"nodes": []})", "\"nodes\" is not an array of nodes"},
        {"huge-number", R"({"nodes": [{"name": "x", "module": "Gate", "settings": {"Enable": 1e400}}]})",
         "is not valid JSON"},
        {"unknown-module", R"({"nodes": [{"name": "x", "module": "Nope"}]})",
         "node 'x': unknown module \"Nope\""},
        {"bad-edge", "{\"nodes\": [" + camera + R"(, {"name": "conv", "module": "Converter"}],
             "edges": [{"from": "cam.Width", "to": "conv.Image"}]})",
         "output pin cam.Width gives"},
    };
    for (const auto& graph : graphs)
    {
        const std::filesystem::path file = folder / (std::string(graph.name) + ".json");
        std::ofstream(file) << graph.text;
        const Command result = host("run " + file.string() + " -o " + (folder / "out").string());
        EXPECT_EQ(result.exitCode, exitBadInput) << graph.name << ": " << result.output;
        EXPECT_THAT(result.output, HasSubstr(graph.message)) << graph.name;
    }
    EXPECT_EQ(host("run").exitCode, exitBadInput);
    EXPECT_EQ(host("--help").exitCode, exitDone);
    // A run that reaches its end with errors in a node has a code of its own.
    const std::string frame = (folder / "frame.png").string();
    std::ofstream(frame) << "not a picture";
    std::ofstream(folder / "errors.json")
        << R"({"nodes": [{"name": "files", "module": "ImageFiles", "settings": {"Path": ")" + frame +
               "\"}}]}";
    const Command failed =
        host("run " + (folder / "errors.json").string() + " -q -n 2 -o " + (folder / "out").string());
    EXPECT_EQ(failed.exitCode, exitFailed) << failed.output;

    const Command missing = host("--package /nonexistent/libPackage.so demo");
    EXPECT_EQ(missing.exitCode, exitCannotOpen);
    EXPECT_THAT(missing.output, HasSubstr("/nonexistent/libPackage.so"));
}

TEST(PackageLoading, BrokenPackagesAreRefusedNamingTheLibraryAndTheFault)
{
    const struct
    {
        const char* library;
        const char* fault;
    } cases[] = {
        {"fake_package_wrong_version", "interface version 1, this host needs 2"},
        {"fake_package_bad_manifest", "the manifest does not parse"},
        {"fake_package_no_manifest", "it has no export create_StaticInfo"},
    };
    for (const auto& broken : cases)
    {
        const std::string path = std::string(TESSAL_LIBRARY_DIR) + "/lib" + broken.library + ".so";
        EXPECT_THAT([&] { PackageLoader package(path); }, testing::ThrowsMessage<PackageError>(testing::AllOf(
                                                              HasSubstr(path), HasSubstr(broken.fault))));
    }
}

// The node-map tool: saved settings load into the same node maps, and the
// register descriptions are the documents of the node maps.
TEST_F(HostRun, SavedSettingsLoadIntoTheSameNodeMapsWhoseDocumentsTheToolShows)
{
    const std::filesystem::path file = freshFolder("settings.json");
    const auto pool = std::make_shared<Core::ResourcePool>();
    const struct
    {
        const char* module;
        const char* feature;
        const char* value;
    } cases[] = {{"Gate", "Enable", "1"},
                 {"Decoupler", "Fps", "12.5"},
                 {"Decompressor", "FixImage", "1"},
                 {"SharpnessExtractor", "AoiHeight", "17"}};
    for (const auto& change : cases)
    {
        const auto saved = catalog.create({"a", change.module}, pool);
        const auto loaded = catalog.create({"b", change.module}, pool);
        const std::vector<FeatureRow> defaults = listFeatures(*loaded);
        setFeature(*saved, change.feature, change.value);
        saveSettings(*saved, file.string());
        loadSettings(*loaded, file.string());
        EXPECT_NE(listFeatures(*saved), defaults) << change.module;
        EXPECT_EQ(listFeatures(*loaded), listFeatures(*saved)) << change.module;
    }
    const std::string decoupler = registerDescriptions(*catalog.create({"d", "Decoupler"}, pool));
    EXPECT_THAT(decoupler, testing::StartsWith("<!-- node map \"@Tessal\" -->\n<?xml"));
    for (const char* feature :
         {"<Boolean Name=\"ThrottleMode\"", "<Float Name=\"Fps\"", "</RegisterDescription>"})
        EXPECT_THAT(decoupler, HasSubstr(feature));
    EXPECT_THAT(registerDescriptions(*catalog.create({"c", "Converter"}, pool)),
                HasSubstr("@ImageFormatConverter"));
    EXPECT_EQ(registerDescriptions(*catalog.create({"h", "HistogramExtractor"}, pool)), "");
}
