// Decompressor: turns a camera's grab result into an image. A healthy frame is
// adopted without a copy, a compressed frame is decompressed with the descriptor
// on "CompressionDescriptor", and a frame that the camera reports as failed is
// repaired from the hints on the "RepairHint..." pins while "FixImage" is true.
// With a grab result on its input, the one output "Image" always carries an
// image: a good one or one in error state.
//
// Thread-safe: "FixImage" is guarded by the node's lock, which run() holds only
// to read it; everything else of a run lives on its own stack.
//
// Chosen here, where the contract leaves it open:
// - A grab result without a buffer is refused with "Grab result has no buffer.",
//   on every path, before anything looks at its bytes.
// - A payload size above the buffer's size never makes anything read past the
//   buffer. The look for compression data reads at most the buffer, and the
//   repair takes what the buffer holds: the image constructor then fills the
//   rest as it does for any short payload, so the user sees what arrived.
// - A negative payload hint, and a width or height hint outside 1 to 2^32 - 1,
//   count as not given: the hints are "not conclusive" rather than cut to size.
// - A healthy frame whose buffer holds its pixels but not the padding after each
//   row is refused with "Grab result's buffer is too small for the rows and their
//   padding.", since the readers of the image take the buffer to cover both.
#pragma once

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>

#include <memory>

class GrabResult;

namespace Tarvik
{
struct CompressionInfo_t;
}

namespace TarvikViewerTessalPackage
{

class Decompressor : public Tarvik::DataProcessing::Core::AdvancedNode,
                     public Tarvik::DataProcessing::Core::INodeMapContainer
{
public:
    explicit Decompressor(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool);
    ~Decompressor() override;

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

private:
    // Reached by the node map and by load and save only; a change tells nobody.
    bool isFixImagesEnabled() const;
    void setFixImagesEnabled(bool enabled);

    // The outputs of one run, by the decisions of the node; throws on a failure.
    Tarvik::DataProcessing::Core::ValueMap process(Tarvik::DataProcessing::Core::ValueMap& inputs,
                                                   bool fixImages);
    // The image written from a compressed frame into a buffer of the pool.
    Tarvik::DataProcessing::Utils::Variant decompress(GrabResult& result,
                                                      const Tarvik::CompressionInfo_t& info,
                                                      Tarvik::DataProcessing::Core::ValueMap& inputs);
    // An image over the buffer of a healthy frame, after the size checks.
    Tarvik::DataProcessing::Utils::Variant adopt(GrabResult& result);
    // The image of a failed frame, rebuilt from its bytes and the hints; throws if they do not suffice.
    Tarvik::DataProcessing::Utils::Variant repair(GrabResult& result,
                                                  const Tarvik::DataProcessing::Core::ValueMap& inputs);

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace TarvikViewerTessalPackage
