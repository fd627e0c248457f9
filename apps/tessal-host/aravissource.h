// A frame source on a GenICam camera that Aravis opens: GigE Vision and USB3
// Vision cameras, and Aravis' in-process fake camera ("Fake_1", after the "Fake"
// interface is enabled), which needs neither hardware nor network.
//
// It streams into a small pool of buffers and gives each buffer to the graph as
// "GrabResult" without a copy: the buffer goes back to the stream when the last
// value that shares it is gone. A buffer of any status but success becomes a
// failed grab result that keeps its bytes but reports no format or size; the
// repair hints come from the camera's "PixelFormat", "Width", "Height" and
// "PayloadSize" features and from the bytes that the stream received for the
// frame ("StreamPayloadSize"). A successful frame is also given as "Image".
//
// Chosen here: a frame that does not come within the timeout (a camera gone, a
// pool held by the graph) and a pixel format the package does not know give
// error values in place of the frame, and the run goes on. After so many
// timeouts in a row the camera counts as lost: every later frame is that error
// at once, and the host ends the run (lostReason).
//
// The camera's own features can be listed, read and written between frames. A
// write stops the acquisition and replaces the stream, so that every frame
// after it was taken after it, in buffers of the new payload size, with hints
// read anew.
//
// Acquisition starts with the first frame asked for and stops with the source.
//
// Not thread-safe: the graph's thread runs it.
#pragma once

#include "hostnode.h"
#include "nodemaptool.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>

struct AravisSettings
{
    // Empty for the first camera found; "Fake_1" enables the fake interface.
    std::string camera;
    // Written to the camera when not 0 or empty.
    uint32_t width = 0;
    uint32_t height = 0;
    std::string pixelFormat;
    // Further features written to the camera after the above, by name:
    // text, whole numbers, numbers or truth values.
    nlohmann::json features = nlohmann::json::object();
    unsigned bufferCount = 8;
    // Bytes of each stream buffer; 0 for the camera's PayloadSize. A smaller
    // buffer truncates every frame: each is a failed grab result.
    size_t bufferSize = 0;
    unsigned timeoutMs = 2000;
    // Timeouts in a row after which the camera counts as lost; 0 for never.
    unsigned lostAfterTimeouts = 3;
    // A rehearsal of a camera that vanishes mid-stream: after so many frames
    // the acquisition stops for good and the stream delivers nothing more, as
    // if the cable were pulled; 0 for never.
    uint64_t vanishAfterFrames = 0;
};

class AravisSource : public HostNode<AravisSource>
{
public:
    // Raises SourceError when the camera cannot be opened or set up.
    AravisSource(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool,
                 const AravisSettings& settings);
    ~AravisSource() override;

    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    // The camera's features, in the map "camera" (see camerafeatures.h).
    std::vector<FeatureRow> listFeatures() const;
    std::string getFeature(const std::string& name) const;
    // Raises std::invalid_argument for a write the camera refuses; the stream
    // is then left as it was.
    void setFeature(const std::string& name, const std::string& value);
    std::string registerDescription() const;

    // Why the camera counts as lost; empty while it delivers.
    const std::string& lostReason() const;

private:
    struct Camera;
    std::unique_ptr<Camera> m_camera;
};
