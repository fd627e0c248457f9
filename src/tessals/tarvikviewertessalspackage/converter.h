// Converter: turns an image of any pixel format into one that a viewer can
// draw. Mono images of any depth become Mono8; Bayer, colour, YUV and every
// other format become BGRA8. The input comes out unchanged on "Image", the
// converted image on "ImageConverted". The node publishes the format
// converter's own node map as "@ImageFormatConverter".
//
// run() takes no lock and uses the node's format converter, which is not
// guarded: it must not overlap with itself on one node object.
#pragma once

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>

#include <memory>

namespace TarvikViewerTessalPackage
{

class Converter : public Tarvik::DataProcessing::Core::AdvancedNode,
                  public Tarvik::DataProcessing::Core::INodeMapContainer
{
public:
    explicit Converter(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool);
    ~Converter() override;

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override;
    void* getRawPointer() override;
    bool isSynchronous() const override;

    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    // Nothing of this node is persisted.
    void load(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>& settings) override;
    void save(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>& settings) override;

    std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> getNodeMaps() override;
    Tarvik::DataProcessing::Utils::ISignal<void()>& getNodeMapsChangedSignal() override;

private:
    Tarvik::DataProcessing::Core::ValueMap convert(Tarvik::DataProcessing::Core::ValueMap& inputs);

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace TarvikViewerTessalPackage
