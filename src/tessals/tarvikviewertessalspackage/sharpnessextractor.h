// SharpnessExtractor: one figure of merit for the focus of the image on
// "Image", given as a Float on "Sharpness": the energy of a 3 by 3 Laplacian
// inside an area of interest (AOI), together with the mean brightness there.
// The AOI is published as "AoiLeft", "AoiTop", "AoiWidth" and "AoiHeight" in the
// node map "@Tessal". Until both width and height are set, run() gives nothing.
//
// Plain mono images (8 bits in bytes, 9 to 16 bits in words) are measured on
// the input's own memory. Colour, Bayer and packed mono images are first
// converted by the node's format converter, to Mono8 or, for 10- and 12-bit
// packings, to Mono16 with the samples at the low end of the word (the
// converter's default alignment), so that they keep their numeric range.
//
// Thread-safe for the accessors, load, save and the node map: the AOI is
// guarded by the node's lock, which run() holds only to copy it. run() uses the
// format converter, the converted image and the sums, which are not guarded:
// it must not overlap with itself on one node object.
//
// Chosen here:
// - The square of a response is exact: a 16-bit response beyond 46340 adds its
//   square computed in 64 bits, as a double; nothing wraps.
// - An AOI whose left plus width, or top plus height, does not fit a signed
//   64-bit value is refused with "AOI is not in image boundaries.", like any
//   other AOI that leaves the image.
// - The AOI is measured in place, on the rows of the input or of the converted
//   image at that image's stride, instead of being copied out first: the same
//   samples, the same figure, no copy.
// - The input's pixels are only read: the image is taken through its read-only
//   view, so that an image shared with other nodes is not copied for writing.
// - The converted image stays a member from run to run; the format converter
//   writes it in place while the format and the size of the input stay the same.
#pragma once

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>

#include <cstdint>
#include <memory>

namespace TarvikViewerTessalPackage
{

class SharpnessExtractor : public Tarvik::DataProcessing::Core::AdvancedNode,
                           public Tarvik::DataProcessing::Core::INodeMapContainer
{
public:
    explicit SharpnessExtractor(
        const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool);
    ~SharpnessExtractor() override;

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override;
    void* getRawPointer() override;
    bool isSynchronous() const override;

    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    void load(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>& settings) override;
    void save(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>& settings) override;

    std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> getNodeMaps() override;
    Tarvik::DataProcessing::Utils::ISignal<void()>& getNodeMapsChangedSignal() override;

    // The AOI in pixels of the input image. The setters store any value; run()
    // checks the four together against the image.
    int64_t getAoiLeft() const;
    void setAoiLeft(int64_t value);
    int64_t getAoiTop() const;
    void setAoiTop(int64_t value);
    int64_t getAoiWidth() const;
    void setAoiWidth(int64_t value);
    int64_t getAoiHeight() const;
    void setAoiHeight(int64_t value);

private:
    Tarvik::DataProcessing::Core::ValueMap extract(Tarvik::DataProcessing::Core::ValueMap& inputs);

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace TarvikViewerTessalPackage
