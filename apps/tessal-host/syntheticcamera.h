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
// Damaged frames, for soak runs: a truncated frame is a compressed frame of
// which only the first bytes arrived (1 byte up to all but one, so that the cut
// falls in the header or in the body), reported as a successful grab of that
// many bytes in a buffer of that size; a corrupted frame is a compressed frame
// with one byte changed in transit, anywhere in header or body. Which frames
// these are follows from the position p of the frame within the scene's repeat
// period: truncated when the fraction of p times the golden ratio is below
// truncatedShare, corrupted when it is below the sum of both shares; after
// failed and before compressed frames. The cut and the changed byte follow from
// p too. So every period of the scene damages the same frames the same way, and
// a run of any length meets a bounded set of damaged frames.
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
    // Shares of the frames that come compressed but cut short, or with a byte changed.
    double truncatedShare = 0.0;
    double corruptedShare = 0.0;
};

class SyntheticCamera : public HostNode<SyntheticCamera>
{
public:
    enum class FrameKind
    {
        Healthy,
        Compressed,
        Failed,
        Truncated,
        Corrupted,
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
    // "ok", "compressed", "failed", "truncated" or "corrupted".
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
