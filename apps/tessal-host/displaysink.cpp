#include "displaysink.h"

using namespace Tarvik::DataProcessing;

DisplaySink::DisplaySink(const std::shared_ptr<Core::IResourcePool>& resourcePool)
    : HostNode(resourcePool)
{
    createInput("Image", "The image to show", Utils::TypeInfo::get<Core::IImage>(true), false, ~uint64_t{0});
}

DisplaySink::~DisplaySink()
{
    cleanup();
}

Core::UpdateOutputs DisplaySink::run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap inputs)
{
    const auto image = inputs["Image"];
    if (m_viewer && image.isValid())
        if (const Image pointer = image.get<Image>(false); pointer.isValid())
            m_viewer(update, pointer);
    return {{update, {}}};
}

namespace
{
const Utils::TypeRegistrar<DisplaySink, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>>
    displayRegistrar("TessalHost::DisplaySink");
} // namespace
