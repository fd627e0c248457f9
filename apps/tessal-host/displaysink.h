// The display of the host: the end of a graph where images are shown. It takes
// any image on "Image" and hands it to the host's viewer callback with the
// update it came on.
//
// Not thread-safe: the graph's thread runs it.
#pragma once

#include "hostnode.h"

#include <TarvikDataProcessingCore/core/IImage.h>

#include <functional>

class DisplaySink : public HostNode<DisplaySink>
{
public:
    using Image = Tarvik::DataProcessing::Utils::COWPtr<Tarvik::DataProcessing::Core::IImage>;
    using Viewer =
        std::function<void(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>&, const Image&)>;

    explicit DisplaySink(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool);
    ~DisplaySink() override;

    void setViewer(Viewer viewer) { m_viewer = std::move(viewer); }

    // Hands a valid image to the viewer; gives no outputs.
    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

private:
    Viewer m_viewer;
};
