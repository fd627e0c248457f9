// A frame source on a GenICam camera that Aravis opens: GigE Vision and USB3
// Vision cameras, and Aravis' in-process fake camera ("Fake_1", after the "Fake"
// interface is enabled), which needs neither hardware nor network.
//
// It streams into a small pool of buffers and gives each buffer to the graph as
// "GrabResult" without a copy: the buffer goes back to the stream when the last
// value that shares it is gone. A buffer of any status but success becomes a
// failed grab result that keeps its bytes but reports no format or size; the
// repair hints come from the camera's "PixelFormat", "Width", "Height" and
// "PayloadSize" features and from the stream's buffer size
// ("StreamPayloadSize"). A successful frame is also given as "Image".
//
// Chosen here: a frame that does not come within the timeout (a camera gone, a
// pool held by the graph) and a pixel format the package does not know give
// error values in place of the frame, and the run goes on.
//
// Acquisition starts with the first frame asked for and stops with the source.
//
// Not thread-safe: the graph's thread runs it.
#pragma once

#include "hostnode.h"

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
    unsigned timeoutMs = 2000;
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

private:
    struct Camera;
    std::unique_ptr<Camera> m_camera;
};
