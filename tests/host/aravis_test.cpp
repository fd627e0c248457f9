// The default graph on Aravis' in-process fake camera: the whole road from a
// GenICam stack to the run's figures, with the camera's buffers adopted, not
// copied, and given back to the stream.
#include "built_package.h"
#include "hostrun.h"
#include "modulecatalog.h"
#include "sourceerror.h"

#include <TarvikDataProcessingCore/core/IImage.h>

#include <TarvikViewerDataTypes2/GrabResult.h>

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr uint32_t width = 64;
constexpr uint32_t height = 48;
constexpr unsigned bufferCount = 3;

DefaultGraphOptions onFakeCamera()
{
    DefaultGraphOptions options;
    options.camera.width = width;
    options.camera.height = height;
    options.aravis = {
        {"Camera", "Fake_1"}, {"Width", width}, {"Height", height}, {"BufferCount", bufferCount}};
    return options;
}

} // namespace

TEST(AravisFakeCamera, DefaultGraphRunsOnAdoptedBuffersThatGoBackToTheStream)
{
    const PackageLoader package{builtPackagePath()};
    const ModuleCatalog catalog{package};
    Core::Graph graph;
    catalog.build(graph, catalog.defaultGraph(onFakeCamera()));
    std::set<const void*> buffers;
    std::vector<uint64_t> histogramSums;
    graph.setObserver(
        [&](const std::shared_ptr<Core::IGraphUpdate>&, const std::string& node,
            const Core::ValueMap& outputs)
        {
            if (node == "camera")
            {
                const auto grab = outputs.at("GrabResult").get<GrabResult>(true);
                const auto image = outputs.at("Image").get<Utils::COWPtr<Core::IImage>>(true);
                ASSERT_TRUE(grab->grabSucceeded());
                ASSERT_EQ(image->getImageData().data, grab->getBuffer()->getData());
                buffers.insert(grab->getBuffer()->getData());
            }
        });
    constexpr int frames = 36;
    graph.start();
    for (int frame = 0; frame < frames; ++frame)
        graph.runUpdate();
    graph.stop();
    // Every frame came, from a pool of three: each buffer went back to the stream.
    EXPECT_EQ(graph.statistics("camera").framesOut(), uint64_t{frames});
    EXPECT_LE(buffers.size(), bufferCount);
    for (const std::string& name : graph.nodeNames())
        EXPECT_EQ(graph.statistics(name).errorCount(), 0u) << name;
}

TEST(AravisFakeCamera, RunLeavesHistogramsThatCountEveryPixel)
{
    const PackageLoader package{builtPackagePath()};
    const ModuleCatalog catalog{package};
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "tessal-host-test-aravis";
    std::filesystem::remove_all(folder);
    RunOptions run;
    run.frames = 30;
    run.outputFolder = folder;
    run.quiet = true;
    ASSERT_EQ(runGraph(catalog, catalog.defaultGraph(onFakeCamera()), run), exitDone);

    std::ifstream figures(folder / "figures.csv");
    std::string line;
    std::getline(figures, line);
    int rows = 0;
    while (std::getline(figures, line))
    {
        std::vector<std::string> fields;
        std::stringstream fieldsOf(line);
        for (std::string field; std::getline(fieldsOf, field, ',');)
            fields.push_back(field);
        ASSERT_GE(fields.size(), 7u) << line;
        // Red, green, blue and luminance: the fake camera's Mono8 frames fill the last.
        uint64_t counted = 0;
        for (size_t channel = 3; channel <= 6; ++channel)
            counted += fields[channel].empty() ? 0 : std::stoull(fields[channel]);
        EXPECT_EQ(counted, width * height) << line;
        ++rows;
    }
    EXPECT_EQ(rows, 30);
    EXPECT_TRUE(std::filesystem::exists(folder / "frames/000000.png"));
}

TEST(AravisFakeCamera, MissingCamerasAndFramesAreReported)
{
    const PackageLoader package{builtPackagePath()};
    const ModuleCatalog catalog{package};
    DefaultGraphOptions options = onFakeCamera();
    options.aravis["Camera"] = "Fake_no_such_camera";
    Core::Graph missing;
    EXPECT_THROW(catalog.build(missing, catalog.defaultGraph(options)), SourceError);

    // A pool of one buffer that the graph holds on to: the next frame cannot
    // come, and is an error value; once the buffer is let go, frames come again.
    options = onFakeCamera();
    options.aravis["BufferCount"] = 1;
    options.aravis["TimeoutMs"] = 50;
    Core::Graph graph;
    catalog.build(graph, catalog.defaultGraph(options));
    std::vector<Core::ValueMap> held;
    graph.setObserver(
        [&](const std::shared_ptr<Core::IGraphUpdate>&, const std::string& node,
            const Core::ValueMap& outputs)
        {
            if (node == "camera")
                held.push_back(outputs);
        });
    graph.start();
    graph.runUpdate();
    graph.runUpdate();
    held.clear();
    graph.runUpdate();
    graph.stop();
    const auto& errors = graph.statistics("camera").errors();
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors.begin()->first, "no frame from camera \"Fake_1\" within 50 ms");
    EXPECT_EQ(errors.begin()->second, 1u);
    EXPECT_EQ(graph.statistics("camera").framesOut(), 3u);
}
