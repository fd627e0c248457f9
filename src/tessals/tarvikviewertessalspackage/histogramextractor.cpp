#include "histogramextractor.h"

#include "runguard.h"
#include "tessalnames.h"

#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/utils/Log.h>
#include <tarvikdataprocessingcore/core/array_impl.h>

#include <TarvikUtility/ImageFormatConverter.h>

namespace TarvikViewerTessalPackage
{

using namespace Tarvik::DataProcessing;
namespace HistogramNames = Names::HistogramExtractor;
using Histogram = Core::Array<Core::IInteger, void>;

namespace
{

constexpr uint64_t unlimited = ~uint64_t{0};
constexpr uint32_t monochromeFamily = 0x01000000u;

int histogramCategory()
{
    static const int id = Utils::getCatId("tarvik.dataprocessing.tessal.HistogramExtractor");
    return id;
}

const Detail::RunChecks runChecks("HistogramExtractor", "TarvikViewerTessalPackage::HistogramExtractor::run",
                                  &histogramCategory);

std::shared_ptr<Threading::RecursiveMutex> freshLock()
{
    return std::make_shared<Threading::RecursiveMutex>();
}

// One Integer per bin, each with a lock of its own, in a Variant of the array.
Utils::Variant histogramValue(const std::vector<uint32_t>& bins)
{
    Histogram histogram(bins.size(), freshLock());
    for (size_t value = 0; value < bins.size(); ++value)
        histogram.elementRef(value) =
            Utils::COWPtr<Core::IInteger>(new Core::Integer(bins[value], freshLock()));
    return Utils::Variant(histogram);
}

bool isDirectlySampledColor(Tarvik::EPixelType type)
{
    return type == Tarvik::PixelType_RGB8 || type == Tarvik::PixelType_BGR8 ||
           type == Tarvik::PixelType_RGB16;
}

} // namespace

struct HistogramExtractor::Impl
{
    // Not guarded: run() does not overlap with itself.
    Tarvik::CImageFormatConverter converter;
};

HistogramExtractor::HistogramExtractor(const std::shared_ptr<Core::IResourcePool>& resourcePool)
    : AdvancedNode(resourcePool)
    , m_impl(std::make_unique<Impl>())
{
    const Utils::TypeInfo histogramType = Utils::TypeInfo::get<Core::IArrayT<Core::IInteger, void>>(true);
    createInput(HistogramNames::InputImage, "Image input", Utils::TypeInfo::get<Core::IImage>(true), false,
                unlimited);
    createOutput(HistogramNames::OutputRed, "Red channel output", histogramType, true, unlimited);
    createOutput(HistogramNames::OutputGreen, "Green channel output", histogramType, true, unlimited);
    createOutput(HistogramNames::OutputBlue, "Blue channel output", histogramType, true, unlimited);
    createOutput(HistogramNames::OutputLum, "Lum channel output", histogramType, true, unlimited);

    // Samples keep their values at the low end of wider words: the bin count
    // comes from the input's depth.
    Tarvik::CImageFormatConverter& converter = m_impl->converter;
    converter.OutputBitAlignment.SetIntValue(0);
    converter.InconvertibleEdgeHandling.SetIntValue(1);
    converter.MaxNumThreads.SetValue(1);
}

HistogramExtractor::~HistogramExtractor()
{
    cleanup();
}

Utils::TypeInfo HistogramExtractor::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<HistogramExtractor>(mustExist);
}

const void* HistogramExtractor::getRawPointer() const
{
    return this;
}

void* HistogramExtractor::getRawPointer()
{
    return this;
}

bool HistogramExtractor::isSynchronous() const
{
    return true;
}

Core::UpdateOutputs HistogramExtractor::run(const std::shared_ptr<Core::IGraphUpdate>& update,
                                            Core::ValueMap inputs)
{
    return Detail::runGuarded<Histogram>(update, "Could not extract histogram data. Reason: ",
                                         {&HistogramNames::OutputRed, &HistogramNames::OutputGreen,
                                          &HistogramNames::OutputBlue, &HistogramNames::OutputLum},
                                         [&] { return extract(inputs); });
}

Core::ValueMap HistogramExtractor::extract(Core::ValueMap& inputs)
{
    const auto input = inputs.find(HistogramNames::InputImage);
    if (input == inputs.end() || !input->second.isValid())
        TESSAL_FAIL_CHECK(runChecks, "Input data does not contain an image or input data is not valid.");
    const ImagePointer image = input->second.get<ImagePointer>(false);
    if (!image.hasObject())
        TESSAL_FAIL_CHECK(runChecks, "Input image is not of type IImage.");

    if (image->hasError(false))
    {
        const std::shared_ptr<Core::IError> error = image->getError(false);
        Core::ValueMap outputs;
        for (const GenICam::gcstring* pin : {&HistogramNames::OutputRed, &HistogramNames::OutputGreen,
                                             &HistogramNames::OutputBlue, &HistogramNames::OutputLum})
            outputs[*pin] = Utils::Variant(Histogram(error, freshLock()));
        return outputs;
    }

    if (image->getWidth() == 0 || image->getHeight() == 0)
        TESSAL_FAIL_CHECK(runChecks, "Input image has no width or height.");
    const Tarvik::EPixelType type = image->getPixelType();
    const uint32_t depth = Tarvik::BitDepth(type);
    if (depth > 16)
        TESSAL_FAIL_CHECK(runChecks, "Input image bit depth is > 16.");
    const size_t binCount = size_t{1} << depth;

    const ColorFilter filter = pixelColorFilter(type);
    Tarvik::EPixelType sourceType = type;
    Tarvik::EPixelType targetType = Tarvik::PixelType_Undefined;
    const bool packed = selectUnpackTypes(type, sourceType, targetType);

    if (type != Tarvik::PixelType_Undefined && (type & monochromeFamily) != 0 && filter == Undefined)
    {
        Bins lum(binCount);
        sampleMono(packed ? unpack(image, sourceType, targetType) : image, lum);
        return {{HistogramNames::OutputLum, histogramValue(lum)}};
    }

    Bins red(binCount);
    Bins green(binCount);
    Bins blue(binCount);
    if (filter != Undefined)
    {
        // The pattern is the input's: the unpacked image is labelled mono.
        sampleBayer(packed ? unpack(image, sourceType, targetType) : image, red, green, blue, filter);
    }
    else
    {
        Bins lum(binCount);
        const Tarvik::EPixelType colorTarget = depth <= 8 ? Tarvik::PixelType_RGB8 : Tarvik::PixelType_RGB16;
        sampleColor(isDirectlySampledColor(type) ? image : unpack(image, type, colorTarget), red, green, blue,
                    lum, false);
    }
    Core::ValueMap outputs;
    outputs[HistogramNames::OutputRed] = histogramValue(red);
    outputs[HistogramNames::OutputGreen] = histogramValue(green);
    outputs[HistogramNames::OutputBlue] = histogramValue(blue);
    return outputs;
}

HistogramExtractor::ImagePointer HistogramExtractor::unpack(const ImagePointer& image,
                                                            Tarvik::EPixelType sourceType,
                                                            Tarvik::EPixelType targetType)
{
    const uint32_t width = image->getWidth();
    const uint32_t height = image->getHeight();
    Utils::COWPtr<Core::TarvikImage> unpacked(
        new Core::TarvikImage(targetType, width, height, 0, getBufferProvider(), freshLock()));
    Tarvik::CImageFormatConverter& converter = m_impl->converter;
    converter.OutputPixelFormat.SetValue(targetType);
    const Core::ImageDataView<const void> source = image->getImageData();
    converter.Convert(unpacked->getImageData().data, unpacked->getImageSize(), source.data,
                      image->getImageSize(), sourceType, width, height, source.paddingX,
                      Tarvik::ImageOrientation_TopDown);
    return ImagePointer(unpacked);
}

void HistogramExtractor::load(const std::shared_ptr<Core::ISettings>&) {}

void HistogramExtractor::save(const std::shared_ptr<Core::ISettings>&) {}

// Registers the class when the library loads: the last step of this unit.
namespace
{
const Utils::TypeRegistrar<HistogramExtractor, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>>
    histogramExtractorRegistrar("TarvikViewerTessalPackage::HistogramExtractor");
} // namespace

} // namespace TarvikViewerTessalPackage
