#include "syntheticcamera.h"

#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <TarvikViewerDataTypes2/CompressionDescriptor.h>
#include <TarvikViewerDataTypes2/GrabResult.h>

#include <TarvikBase/PixelTypeMapper.h>

#include <cmath>
#include <cstring>
#include <stdexcept>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr uint64_t unlimited = ~uint64_t{0};

std::shared_ptr<Threading::RecursiveMutex> newLock()
{
    return std::make_shared<Threading::RecursiveMutex>();
}

// True when `share` of the frames up to `frame` passes a whole number at `frame`.
bool crosses(uint64_t frame, double share, double offset)
{
    const auto k = static_cast<double>(frame);
    return std::floor((k + 1.0) * share + offset) > std::floor(k * share + offset);
}

// A truncated frame keeps 1 byte up to all but one, a corrupted frame has one
// byte changed; both chosen by the frame's position in the scene's period.
void damage(std::vector<uint8_t>& frame, SyntheticCamera::FrameKind kind, uint64_t inPeriod)
{
    if (kind == SyntheticCamera::FrameKind::Truncated)
    {
        const uint64_t percent = inPeriod * 37 % 100;
        frame.resize(1 + (frame.size() - 2) * percent / 100);
    }
    else if (kind == SyntheticCamera::FrameKind::Corrupted)
        frame[inPeriod * 7919 % frame.size()] ^= static_cast<uint8_t>(1 + inPeriod % 255);
}

} // namespace

SyntheticCamera::SyntheticCamera(const std::shared_ptr<Core::IResourcePool>& resourcePool,
                                 const SyntheticCameraSettings& settings)
    : HostNode(resourcePool)
    , m_settings(settings)
    , m_scene(settings.width, settings.height, settings.pixelType)
{
    for (const double share :
         {settings.compressedShare, settings.failedShare, settings.truncatedShare, settings.corruptedShare})
        if (!(share >= 0.0 && share <= 1.0))
            throw std::invalid_argument("the shares of compressed, failed, truncated and corrupted frames "
                                        "lie between 0 and 1");
    const auto integerType = Utils::TypeInfo::get<Core::IInteger>(true);
    createOutput("GrabResult", "The frame as the stream grabber delivered it",
                 Utils::TypeInfo::get<GrabResult>(true), true, unlimited);
    createOutput("CompressionDescriptor", "The codec parameters of compressed frames",
                 Utils::TypeInfo::get<CompressionDescriptor>(true), true, unlimited);
    createOutput("PixelFormat", "The camera's PixelFormat feature", Utils::TypeInfo::get<Core::IString>(true),
                 true, unlimited);
    createOutput("Width", "The camera's Width feature", integerType, true, unlimited);
    createOutput("Height", "The camera's Height feature", integerType, true, unlimited);
    createOutput("PayloadSize", "The camera's PayloadSize feature", integerType, true, unlimited);
    createOutput("Image", "The healthy frame as an image", Utils::TypeInfo::get<Core::IImage>(true), true,
                 unlimited);

    m_descriptor = Utils::Variant(CompressionDescriptor(m_compressor.GetCompressionDescriptor()));
    m_pixelFormat = Utils::Variant(
        Core::String(Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(settings.pixelType), newLock()));
    m_width = Utils::Variant(Core::Integer(settings.width, newLock()));
    m_height = Utils::Variant(Core::Integer(settings.height, newLock()));
    m_payloadSize = Utils::Variant(Core::Integer(static_cast<int64_t>(m_scene.frameSize()), newLock()));
}

SyntheticCamera::~SyntheticCamera()
{
    cleanup();
}

SyntheticCamera::FrameKind SyntheticCamera::kindOf(uint64_t frame) const
{
    if (crosses(frame, m_settings.failedShare, 0.0))
        return FrameKind::Failed;
    // The golden-ratio sequence spreads any share evenly over the period, in a
    // pattern of its own beside the failed and compressed frames.
    const double spread =
        std::fmod(static_cast<double>(frame % SyntheticScene::repeatPeriod) * 0.6180339887498949, 1.0);
    if (spread < m_settings.truncatedShare)
        return FrameKind::Truncated;
    if (spread < m_settings.truncatedShare + m_settings.corruptedShare)
        return FrameKind::Corrupted;
    if (crosses(frame, m_settings.compressedShare, 0.5))
        return FrameKind::Compressed;
    return FrameKind::Healthy;
}

std::string SyntheticCamera::frameStatus(uint64_t frame) const
{
    switch (kindOf(frame))
    {
    case FrameKind::Compressed:
        return "compressed";
    case FrameKind::Failed:
        return "failed";
    case FrameKind::Truncated:
        return "truncated";
    case FrameKind::Corrupted:
        return "corrupted";
    default:
        return "ok";
    }
}

Core::UpdateOutputs SyntheticCamera::run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap)
{
    const uint64_t frame = m_nextFrame++;
    const size_t frameSize = m_scene.frameSize();
    const std::shared_ptr<Core::IBuffer> pixels = getBufferProvider()->allocate(frameSize);
    m_scene.render(frame, static_cast<uint8_t*>(pixels->getData()));

    GrabResultDescription description{true,     m_scene.pixelType(), m_scene.width(), m_scene.height(), 0,
                                      frameSize};
    std::shared_ptr<Core::IBuffer> payload = pixels;
    const FrameKind kind = kindOf(frame);
    switch (kind)
    {
    case FrameKind::Compressed:
    case FrameKind::Truncated:
    case FrameKind::Corrupted:
    {
        std::vector<uint8_t> compressed = m_compressor.CompressImage(
            pixels->getData(), frameSize, m_scene.pixelType(), m_scene.width(), m_scene.height(), 0);
        damage(compressed, kind, frame % SyntheticScene::repeatPeriod);
        payload = getBufferProvider()->allocate(compressed.size());
        std::memcpy(payload->getData(), compressed.data(), compressed.size());
        description.payloadSize = compressed.size();
        break;
    }
    case FrameKind::Failed:
        // The bytes arrived, but the camera could not tell what they are.
        description = {false, Tarvik::PixelType_Undefined, 0, 0, 0, 0};
        break;
    case FrameKind::Healthy:
        break;
    }

    Utils::Variant image;
    image.setData(Utils::COWPtr<Core::IImage>(
        new Core::Image(m_scene.pixelType(), m_scene.width(), m_scene.height(), 0, pixels, newLock())));
    return {{update,
             {{"GrabResult", Utils::Variant(GrabResult(description, payload))},
              {"CompressionDescriptor", m_descriptor},
              {"PixelFormat", m_pixelFormat},
              {"Width", m_width},
              {"Height", m_height},
              {"PayloadSize", m_payloadSize},
              {"Image", image}}}};
}

namespace
{
const Utils::TypeRegistrar<SyntheticCamera, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>>
    cameraRegistrar("TessalHost::SyntheticCamera");
} // namespace
