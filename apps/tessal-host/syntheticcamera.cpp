#include "syntheticcamera.h"

#include <TarvikDataProcessingCore/core/Image.h>

using namespace Tarvik::DataProcessing;

namespace
{
constexpr uint64_t unlimited = ~uint64_t{0};
} // namespace

SyntheticCamera::SyntheticCamera(const std::shared_ptr<Core::IResourcePool>& resourcePool,
                                 const SyntheticCameraSettings& settings)
    : AdvancedNode(resourcePool)
    , m_scene(settings.width, settings.height, settings.pixelType)
{
    createOutput("Image", "The frame as an image", Utils::TypeInfo::get<Core::IImage>(true), true, unlimited);
}

SyntheticCamera::~SyntheticCamera()
{
    cleanup();
}

Utils::TypeInfo SyntheticCamera::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<SyntheticCamera>(mustExist);
}

Core::UpdateOutputs SyntheticCamera::run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap)
{
    const uint64_t frame = m_nextFrame++;
    const std::shared_ptr<Core::IBuffer> buffer = getBufferProvider()->allocate(m_scene.frameSize());
    m_scene.render(frame, static_cast<uint8_t*>(buffer->getData()));
    Utils::Variant image;
    image.setData(
        Utils::COWPtr<Core::IImage>(new Core::Image(m_scene.pixelType(), m_scene.width(), m_scene.height(), 0,
                                                    buffer, std::make_shared<Threading::RecursiveMutex>())));
    return {{update, {{"Image", image}}}};
}

std::string SyntheticCamera::frameStatus(uint64_t) const
{
    return "ok";
}

namespace
{
const Utils::TypeRegistrar<SyntheticCamera, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>>
    cameraRegistrar("TessalHost::SyntheticCamera");
} // namespace
