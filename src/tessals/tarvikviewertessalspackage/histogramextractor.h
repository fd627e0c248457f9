// HistogramExtractor: counts every sample of the image on "Image" into one
// histogram per channel, an array of integers with one element per possible
// sample value. Mono images give "Lum"; Bayer and colour images give "Red",
// "Green" and "Blue". Packed and other formats that the samplers cannot read
// directly are unpacked first by the node's format converter, with the samples
// kept at the low end of wider words, so that the counts keep their range.
//
// The node has no parameters, no lock and no settings. run() uses the node's
// format converter, which is not guarded: it must not overlap with itself on
// one node object.
//
// Chosen here: the unpacked image has no row padding, whatever the input's, so
// that the converter's default output padding of 0 always describes it; the
// samplers walk each image by its own stride.
#pragma once

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <TarvikBase/PixelType.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace TarvikViewerTessalPackage
{

class HistogramExtractor : public Tarvik::DataProcessing::Core::AdvancedNode
{
public:
    explicit HistogramExtractor(
        const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool);
    ~HistogramExtractor() override;

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

private:
    // The sampling tests and benchmarks call the samplers on their own.
    friend struct HistogramSamplingAccess;

    // Position of the Bayer pattern: the colours of the first two samples of the first row.
    enum ColorFilter : uint8_t
    {
        BayerRG = 0,
        BayerGB = 1,
        BayerGR = 2,
        BayerBG = 3,
        Undefined = 4,
    };

    // One counter per sample value.
    using Bins = std::vector<uint32_t>;
    using ImagePointer = Tarvik::DataProcessing::Utils::COWPtr<Tarvik::DataProcessing::Core::IImage>;

    // The samplers: each walks every row of the image once and skips the row
    // padding. The bin count is the length of the vectors, which must all be
    // as long as the first (GenICam::InvalidArgumentException otherwise).
    // sampleBayer and sampleColor raise GenICam::RuntimeException "Internal
    // error in histogram sampling. Sample out of range." for a sample at or above
    // the bin count, after which the counts are incomplete and must be dropped;
    // sampleMono skips such samples. An image whose buffer is smaller than its size needs raises
    // GenICam::RuntimeException.
    static ColorFilter pixelColorFilter(Tarvik::EPixelType pixelType);
    // True when an image of `pixelType` must be unpacked, from `sourceType` as
    // the conversion is to read it into `targetType`, before it can be sampled.
    static bool selectUnpackTypes(Tarvik::EPixelType pixelType, Tarvik::EPixelType& sourceType,
                                  Tarvik::EPixelType& targetType);
    static void sampleMono(const ImagePointer& image, Bins& lum);
    static void sampleBayer(const ImagePointer& image, Bins& red, Bins& green, Bins& blue,
                            ColorFilter filter);
    static void sampleColor(const ImagePointer& image, Bins& red, Bins& green, Bins& blue, Bins& lum,
                            bool computeLum);

    Tarvik::DataProcessing::Core::ValueMap extract(Tarvik::DataProcessing::Core::ValueMap& inputs);
    ImagePointer unpack(const ImagePointer& image, Tarvik::EPixelType sourceType,
                        Tarvik::EPixelType targetType);

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace TarvikViewerTessalPackage
