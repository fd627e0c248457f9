// The default graph on Aravis' in-process fake camera: frames from a GenICam
// stack on the camera's buffers, adopted, not copied, and given back to the
// stream, and every node of the graph without an error (what the nodes make of
// a frame, their own tests pin); the camera's own features through the
// node-map tool; and what the camera can do wrong.
#include "host_command.h"
#include "hostrun.h"
#include "nodemaptool.h"
#include "package_graph.h"
#include "sourceerror.h"

#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <TarvikViewerDataTypes2/GrabResult.h>

#include <algorithm>
#include <set>

using namespace Tarvik::DataProcessing;
using testing::HasSubstr;

namespace
{

constexpr uint32_t width = 64;
constexpr uint32_t height = 48;
constexpr unsigned bufferCount = 3;

using Image = Utils::COWPtr<Core::IImage>;

class AravisFakeCamera : public PackageGraph
{
protected:
    // Builds the default graph on the fake camera, with `changes` to the camera's settings.
    void buildOnFakeCamera(const nlohmann::json& changes = nlohmann::json::object())
    {
        DefaultGraphOptions options;
        options.camera.width = width;
        options.camera.height = height;
        options.aravis = {
            {"Camera", "Fake_1"}, {"Width", width}, {"Height", height}, {"BufferCount", bufferCount}};
        options.aravis.update(changes);
        build(catalog.defaultGraph(options));
    }

    // The description of the camera's error value on `node`'s image.
    std::string imageError(const std::string& node) const
    {
        return lastValue(node)->getError(false)->getDescription().c_str();
    }
};

} // namespace

// Frames on the camera's own buffers, which go back to the stream; a feature
// written through the node-map tool changes the frames that follow.
TEST_F(AravisFakeCamera, FramesComeOnAdoptedBuffersAndFollowFeatureWrites)
{
    buildOnFakeCamera();
    Core::INode& camera = *graph->node("camera");
    const std::vector<FeatureRow> rows = listFeatures(camera);
    const auto widthRow =
        std::find_if(rows.begin(), rows.end(), [](const FeatureRow& row) { return row.name == "Width"; });
    ASSERT_NE(widthRow, rows.end());
    EXPECT_EQ(*widthRow,
              (FeatureRow{"camera", "Width", "Integer", "RW", "64", "1..2048 step 1", "Beginner"}));

    std::set<const void*> buffers;
    std::vector<uint32_t> grabbed;
    std::vector<int64_t> hinted;
    const auto runFrames = [&](int frames)
    {
        for (int frame = 0; frame < frames; ++frame)
        {
            graph->runUpdate();
            const auto grab = lastValue<GrabResult>("camera", "GrabResult");
            ASSERT_TRUE(grab->grabSucceeded());
            const Image image = lastValue("camera"); // const: reading makes no copy of its own
            ASSERT_EQ(image->getImageData().data, grab->getBuffer()->getData());
            buffers.insert(grab->getBuffer()->getData());
            grabbed.push_back(grab->getWidth());
            hinted.push_back(lastValue<Core::IInteger>("camera", "Width")->getValue());
        }
    };
    graph->start();
    runFrames(12);
    // Every frame came, from a pool of three: each buffer went back to the stream.
    EXPECT_LE(buffers.size(), bufferCount);
    // Wider frames need larger buffers than the pool's: the stream is renewed.
    setFeature(camera, "Width", "96");
    EXPECT_EQ(getFeature(camera, "Width"), "96");
    runFrames(3);
    EXPECT_THROW(setFeature(camera, "Width", "4096"), std::invalid_argument); // beyond the sensor
    runFrames(1);
    graph->stop();
    std::vector<uint32_t> widths(12, 64);
    widths.insert(widths.end(), 4, 96);
    EXPECT_EQ(grabbed, widths);
    EXPECT_EQ(hinted, std::vector<int64_t>(widths.begin(), widths.end()));
    for (const std::string& name : graph->nodeNames())
        EXPECT_EQ(graph->statistics(name).errorCount(), 0u) << name;
}

TEST_F(AravisFakeCamera, TruncatedBuffersAreFailedGrabResultsThatTheHintsRepair)
{
    buildOnFakeCamera({{"BufferSize", width * height / 2}});
    run(1);
    const auto failed = lastValue<GrabResult>("camera", "GrabResult");
    EXPECT_FALSE(failed->hasError(false));
    EXPECT_FALSE(failed->grabSucceeded());
    EXPECT_EQ(imageError("camera"), "the camera's buffer came with status \"size mismatch\"");
    const Image repaired = lastValue("decompressor");
    ASSERT_FALSE(repaired->hasError(false));
    EXPECT_EQ(repaired->getWidth(), width);
    EXPECT_EQ(repaired->getHeight(), height);
}

TEST_F(AravisFakeCamera, UnknownPixelFormatIsAnErrorValueNamingTheCode)
{
    // A code beside those that the camera's PixelFormat names: Mono, 8 bits, id 0x99.
    buildOnFakeCamera({{"Features", {{"PixelFormatRegister", 0x01080099}}}});
    run(1);
    const char* const unknown = "the camera sent pixel format 0x01080099, which the package does not know";
    const auto refused = lastValue<GrabResult>("camera", "GrabResult");
    ASSERT_TRUE(refused->hasError(false));
    EXPECT_STREQ(refused->getError(false)->getDescription().c_str(), unknown);
}

TEST_F(AravisFakeCamera, MissingCamerasAndFramesAreReported)
{
    EXPECT_THROW(buildOnFakeCamera({{"Camera", "Fake_no_such_camera"}}), SourceError);

    // A pool of one buffer, which the record of the last outputs holds until the
    // next update replaces it: that update cannot have a frame, and gives an
    // error value; then the buffer is free, and a frame comes again. Timeouts
    // that are not in a row do not make the camera lost.
    buildOnFakeCamera({{"BufferCount", 1}, {"TimeoutMs", 50}, {"LostAfterTimeouts", 2}});
    run(4);
    const auto& errors = graph->statistics("camera").errors();
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors.begin()->first, "no frame from camera \"Fake_1\" within 50 ms");
    EXPECT_EQ(errors.begin()->second, 2u);
    EXPECT_EQ(graph->statistics("camera").framesOut(), 4u);
}

// The camera through the command line: its features, and a camera that stops
// sending mid-stream, which ends the run.
TEST(AravisCommands, CameraFeaturesAndALostCamera)
{
    const Command set = host("nodemap --camera Fake_1 set Width 100");
    EXPECT_EQ(set.exitCode, exitDone) << set.output;
    EXPECT_THAT(set.output, HasSubstr("Width = 100\n"));
    const Command unknown = host("nodemap --camera Fake_1 get NoSuchFeature");
    EXPECT_EQ(unknown.exitCode, exitBadInput) << unknown.output;
    EXPECT_THAT(unknown.output, HasSubstr("the camera has no feature \"NoSuchFeature\""));

    const std::filesystem::path folder = freshFolder("lost");
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "graph.json") << R"({"nodes": [
        {"name": "camera", "module": "AravisCamera", "settings": {"Camera": "Fake_1", "Width": 32,
         "Height": 16, "TimeoutMs": 100, "LostAfterTimeouts": 3, "VanishAfterFrames": 5}},
        {"name": "display", "module": "Display"}],
      "edges": [{"from": "camera.Image", "to": "display.Image"}]})";
    const Command lost =
        host("run " + (folder / "graph.json").string() + " -q -n 50 -o " + (folder / "out").string());
    EXPECT_EQ(lost.exitCode, exitSourceLost) << lost.output;
    EXPECT_THAT(lost.output,
                HasSubstr("camera \"Fake_1\" lost: 3 frames in a row did not come within 100 ms; "
                          "the run ended after 8 of 50 frames"));
}
