// The host's embedded frame source: a node without inputs that renders the
// synthetic scene on each update, frame after frame, in the pixel format it is
// set to.
//
// It gives each frame as a camera would: "GrabResult" with the repair hints a
// camera's features give ("PixelFormat", "Width", "Height", "PayloadSize") and
// its "CompressionDescriptor"; and, for graphs without a Decompressor, the
// healthy frame as "Image" over the same buffer. A share of the frames comes
// compressed, a share failed: a failed frame holds all its bytes but reports no
// format or size, so that only the hints can repair it. Which frames these are
// follows from the shares alone: frame k is failed when k * failedShare passes
// a whole number, compressed when k * compressedShare + 1/2 does and it is not
// failed. Nothing is copied: the image and the grab result share the buffer of
// the framework's provider.
//
// Not thread-safe: the graph's thread runs it.
#pragma once

#include "hostnode.h"
#include "syntheticscene.h"

#include <TarvikUtility/ImageCompressor.h>

#include <memory>
#include <string>

struct SyntheticCameraSettings
{
    uint32_t width = 640;
    uint32_t height = 480;
    Tarvik::EPixelType pixelType = Tarvik::PixelType_BayerRG8;
    // Shares of the frames, from 0 to 1, that come compressed and that come failed.
    double compressedShare = 0.0;
    double failedShare = 0.0;
};

class SyntheticCamera : public HostNode<SyntheticCamera>
{
public:
    enum class FrameKind
    {
        Healthy,
        Compressed,
        Failed,
    };

    // Raises std::invalid_argument for settings the scene cannot render or shares outside [0, 1].
    SyntheticCamera(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool,
                    const SyntheticCameraSettings& settings);
    ~SyntheticCamera() override;

    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    const SyntheticScene& scene() const { return m_scene; }
    FrameKind kindOf(uint64_t frame) const;
    // "ok", "compressed" or "failed".
    std::string frameStatus(uint64_t frame) const;

private:
    SyntheticCameraSettings m_settings;
    SyntheticScene m_scene;
    Tarvik::CImageCompressor m_compressor;
    Tarvik::DataProcessing::Utils::Variant m_descriptor;
    Tarvik::DataProcessing::Utils::Variant m_pixelFormat;
    Tarvik::DataProcessing::Utils::Variant m_width;
    Tarvik::DataProcessing::Utils::Variant m_height;
    Tarvik::DataProcessing::Utils::Variant m_payloadSize;
    uint64_t m_nextFrame = 0;
};
