#include "converter.h"

#include "bayercodes.h"
#include "runguard.h"
#include "tessalnames.h"

#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>
#include <TarvikDataProcessingCore/utils/Log.h>

#include <TarvikBase/PixelType.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <GenApi/GenApi.h>

#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>
#include <tarvikdataprocessingcore/utils/signal_impl.h>

namespace TarvikViewerTessalPackage
{

using namespace Tarvik::DataProcessing;
namespace ConverterNames = Names::Converter;

namespace
{

constexpr uint64_t unlimited = ~uint64_t{0};

int converterCategory()
{
    static const int id = Utils::getCatId("tarvik.dataprocessing.tessal.Converter");
    return id;
}

const Detail::RunChecks runChecks("Converter", "TarvikViewerTessalPackage::Converter::run",
                                  &converterCategory);

// Mono of any depth is shown as Mono8; everything else, the undefined type included, as BGRA8.
Tarvik::EPixelType displayableTarget(Tarvik::EPixelType source)
{
    const bool mono = source != Tarvik::PixelType_Undefined && (source & 0x01000000u) != 0 &&
                      !Detail::isBayerPixelType(source);
    return mono ? Tarvik::PixelType_Mono8 : Tarvik::PixelType_BGRa8;
}

std::shared_ptr<Threading::RecursiveMutex> freshLock()
{
    return std::make_shared<Threading::RecursiveMutex>();
}

} // namespace

struct Converter::Impl
{
    std::shared_ptr<Threading::RecursiveCLock> lock;
    // The converter's node map never changes: the signal is never fired.
    Utils::Signal<void()> nodeMapsChanged;
    Tarvik::CImageFormatConverter converter;
};

Converter::Converter(const std::shared_ptr<Core::IResourcePool>& resourcePool)
    : AdvancedNode(resourcePool)
    , m_impl(std::make_unique<Impl>())
{
    m_impl->lock = std::make_shared<Threading::RecursiveCLock>();
    setLock(m_impl->lock);

    Tarvik::CImageFormatConverter& converter = m_impl->converter;
    converter.InconvertibleEdgeHandling.SetIntValue(1);
    converter.OutputBitAlignment.SetIntValue(1);
    converter.MaxNumThreads.SetValue(1);

    GenApi::INodeMap* const nodeMap = converter.GetNodeMap();
    for (const char* hidden : {"OutputPaddingX", "InconvertibleEdgeHandling"})
        nodeMap->GetNode(hidden)->ImposeVisibility(GenApi::Invisible);

    const Utils::TypeInfo imageType = Utils::TypeInfo::get<Core::IImage>(true);
    createInput(ConverterNames::InputImage, "Image input", imageType, false, unlimited);
    createOutput(ConverterNames::OutputImage, "Original image output", imageType, true, unlimited);
    createOutput(ConverterNames::OutputImageConverted, "Displayable image output", imageType, true,
                 unlimited);
}

Converter::~Converter()
{
    cleanup();
}

Utils::TypeInfo Converter::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<Converter>(mustExist);
}

const void* Converter::getRawPointer() const
{
    return this;
}

void* Converter::getRawPointer()
{
    return this;
}

bool Converter::isSynchronous() const
{
    return true;
}

Core::UpdateOutputs Converter::run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap inputs)
{
    return Detail::runGuarded<Core::Image>(
        update, "Could not convert image. Reason: ", {&ConverterNames::OutputImageConverted},
        [&] { return convert(inputs); });
}

Core::ValueMap Converter::convert(Core::ValueMap& inputs)
{
    const auto input = inputs.find(ConverterNames::InputImage);
    if (input == inputs.end() || !input->second.isValid())
        TESSAL_FAIL_CHECK(runChecks, "Input data does not contain an image or input data is not valid.");
    const Utils::Variant& inputValue = input->second;
    const Utils::COWPtr<Core::IImage> image = inputValue.get<Utils::COWPtr<Core::IImage>>(false);
    if (!image.hasObject())
        TESSAL_FAIL_CHECK(runChecks, "Input image is not of type IImage.");

    if (image->hasError(false))
    {
        const std::shared_ptr<Core::IError> error = image->getError(false);
        Core::ValueMap outputs;
        outputs[ConverterNames::OutputImage] = Utils::Variant(Core::Image(error, freshLock()));
        outputs[ConverterNames::OutputImageConverted] = Utils::Variant(Core::Image(error, freshLock()));
        return outputs;
    }

    const uint32_t width = image->getWidth();
    if (width == 0 || image->getHeight() == 0)
        TESSAL_FAIL_CHECK(runChecks, "Input image has no width or height.");
    const uint32_t height = image->getHeight();

    const Core::ImageDataView<const void> source = image->getImageData();
    const Tarvik::EPixelType sourceType = image->getPixelType();
    const Tarvik::EPixelType target = displayableTarget(sourceType);

    size_t stride = 0;
    Tarvik::ComputeStride(stride, target, width, 0);
    const size_t paddingX = Tarvik::ComputePaddingX(stride, target, width);

    Tarvik::CImageFormatConverter& converter = m_impl->converter;
    converter.OutputPixelFormat.SetValue(target);
    converter.OutputPaddingX.SetValue(static_cast<int64_t>(paddingX));

    const size_t size = Tarvik::ComputeBufferSize(target, width, height, paddingX);
    const std::shared_ptr<Core::IBuffer> buffer = getBufferProvider()->allocate(size);
    converter.Convert(buffer->getData(), buffer->getSize(), source.data, image->getImageSize(), sourceType,
                      width, height, source.paddingX, Tarvik::ImageOrientation_TopDown);

    Core::ValueMap outputs;
    outputs[ConverterNames::OutputImage] = inputValue;
    outputs[ConverterNames::OutputImageConverted] =
        Utils::Variant(Core::Image(target, width, height, paddingX, buffer, freshLock()));
    return outputs;
}

void Converter::load(const std::shared_ptr<Core::ISettings>&) {}

void Converter::save(const std::shared_ptr<Core::ISettings>&) {}

std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> Converter::getNodeMaps()
{
    Threading::UniqueLock guard(getLock().get());
    return {{"@ImageFormatConverter", m_impl->converter.GetNodeMap()}};
}

Utils::ISignal<void()>& Converter::getNodeMapsChangedSignal()
{
    return m_impl->nodeMapsChanged;
}

// Registers the class when the library loads: the last step of this unit.
namespace
{
const Utils::TypeRegistrar<Converter, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>, Utils::DirectBase<Core::INodeMapContainer>>
    converterRegistrar("TarvikViewerTessalPackage::Converter");
} // namespace

} // namespace TarvikViewerTessalPackage
