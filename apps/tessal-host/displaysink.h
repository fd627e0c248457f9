// The display of the host: the end of a graph where images are shown. It takes
// any image on "Image" and hands it to the host's viewer callback with the
// update it came on.
//
// Not thread-safe: the graph's thread runs it.
#pragma once

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/IImage.h>

#include <functional>

class DisplaySink : public Tarvik::DataProcessing::Core::AdvancedNode
{
public:
    using Image = Tarvik::DataProcessing::Utils::COWPtr<Tarvik::DataProcessing::Core::IImage>;
    using Viewer =
        std::function<void(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>&, const Image&)>;

    explicit DisplaySink(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool);
    ~DisplaySink() override;

    void setViewer(Viewer viewer) { m_viewer = std::move(viewer); }

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }
    bool isSynchronous() const override { return true; }

    // Hands a valid image to the viewer; gives no outputs.
    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    void load(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>&) override {}
    void save(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>&) override {}

private:
    Viewer m_viewer;
};
