#include "sharpnessextractor.h"

#include "bayercodes.h"
#include "runguard.h"
#include "sharpnessmeasurement.h"
#include "tessalnames.h"
#include "tessalnodemap.h"

#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>
#include <TarvikDataProcessingCore/utils/Log.h>

#include <TarvikBase/PixelType.h>
#include <TarvikUtility/ImageFormatConverter.h>
#include <TarvikUtility/TarvikImage.h>

#include <AnythingToNodeMapAdapter/IntegerParameterPortRelay.h>

#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>
#include <tarvikdataprocessingcore/utils/signal_impl.h>

#include <limits>

namespace TarvikViewerTessalPackage
{

using namespace Tarvik::DataProcessing;
namespace SharpnessNames = Names::SharpnessExtractor;

namespace
{

constexpr uint64_t unlimited = ~uint64_t{0};
constexpr uint32_t monochromeFamily = 0x01000000u;

int sharpnessCategory()
{
    static const int id = Utils::getCatId("tarvik.dataprocessing.tessal.SharpnessExtractor");
    return id;
}

const Detail::RunChecks runChecks("SharpnessExtractor", "TarvikViewerTessalPackage::SharpnessExtractor::run",
                                  &sharpnessCategory);

std::shared_ptr<Threading::RecursiveMutex> freshLock()
{
    return std::make_shared<Threading::RecursiveMutex>();
}

template <int64_t (SharpnessExtractor::*getter)() const, void (SharpnessExtractor::*setter)(int64_t)>
using AoiRelay =
    AnythingToNodeMapAdapter::IntegerParameterPortRelay<int64_t, SharpnessExtractor, getter, setter>;
using LeftRelay = AoiRelay<&SharpnessExtractor::getAoiLeft, &SharpnessExtractor::setAoiLeft>;
using TopRelay = AoiRelay<&SharpnessExtractor::getAoiTop, &SharpnessExtractor::setAoiTop>;
using WidthRelay = AoiRelay<&SharpnessExtractor::getAoiWidth, &SharpnessExtractor::setAoiWidth>;
using HeightRelay = AoiRelay<&SharpnessExtractor::getAoiHeight, &SharpnessExtractor::setAoiHeight>;

// The format an image must be converted to before it can be measured; undefined
// for the plain mono formats, which are measured as they stand.
Tarvik::EPixelType measurableFormat(Tarvik::EPixelType type)
{
    using namespace Tarvik;
    if (type == PixelType_Undefined || (type & monochromeFamily) == 0 || Detail::isBayerPixelType(type))
        return PixelType_Mono8;
    switch (type)
    {
    case PixelType_Mono1p:
    case PixelType_Mono2p:
    case PixelType_Mono4p:
        return PixelType_Mono8;
    case PixelType_Mono10Packed:
    case PixelType_Mono10p:
    case PixelType_Mono12Packed:
    case PixelType_Mono12p:
        return PixelType_Mono16;
    default:
        return PixelType_Undefined;
    }
}

} // namespace

struct SharpnessExtractor::Impl
{
    // Guarded by lock.
    int64_t aoiLeft = 0;
    int64_t aoiTop = 0;
    int64_t aoiWidth = 0;
    int64_t aoiHeight = 0;
    // Declared before the ports, so that the ports' last owner is the adapter's node map.
    AnythingToNodeMapAdapter::CAnythingToNodeMapAdapter adapter;
    std::shared_ptr<LeftRelay> leftPort;
    std::shared_ptr<TopRelay> topPort;
    std::shared_ptr<WidthRelay> widthPort;
    std::shared_ptr<HeightRelay> heightPort;
    std::shared_ptr<Threading::RecursiveCLock> lock;
    // The node map never changes: the signal is never fired.
    Utils::Signal<void()> nodeMapsChanged;
    // Not guarded: run() does not overlap with itself.
    Tarvik::CTarvikImage targetImage;
    Tarvik::CImageFormatConverter converter;
    Detail::SharpnessSums sums;
};

namespace
{

template <typename Relay>
std::shared_ptr<Relay> makeAoiPort(SharpnessExtractor* node, const GenICam::gcstring& name, const char* text)
{
    return std::make_shared<Relay>(node, name, text, text, text, "Guru", true, true, true, true, 0,
                                   std::numeric_limits<int64_t>::max(), 1, "PureNumber");
}

// The AOI as run() copied it, already checked against the image.
struct Aoi
{
    uint32_t left;
    uint32_t top;
    uint32_t width;
    uint32_t height;
};

// The samples of the AOI in `image`, read in place.
Detail::SampleRegion regionOf(const Tarvik::CTarvikImage& image, const Aoi& aoi)
{
    const uint32_t depth = Tarvik::BitDepth(image.GetPixelType());
    const size_t sampleBytes = depth <= 8 ? 1 : 2;
    const size_t stride = image.GetStride();
    // What the measurement reads must lie in the buffer, whatever the format's layout.
    const size_t rowEnd = (size_t{aoi.left} + aoi.width) * sampleBytes;
    if (rowEnd > stride || (size_t{aoi.top} + aoi.height - 1) * stride + rowEnd > image.GetBufferSize())
        throw RUNTIME_EXCEPTION("Image buffer of %zu bytes does not hold the area of interest.",
                                image.GetBufferSize());
    const auto* const data = static_cast<const uint8_t*>(image.GetBuffer());
    return {data + aoi.top * stride + aoi.left * sampleBytes, stride, aoi.width, aoi.height, depth};
}

} // namespace

SharpnessExtractor::SharpnessExtractor(const std::shared_ptr<Core::IResourcePool>& resourcePool)
    : AdvancedNode(resourcePool)
    , m_impl(std::make_unique<Impl>())
{
    m_impl->lock = std::make_shared<Threading::RecursiveCLock>();
    setLock(m_impl->lock);

    createInput(SharpnessNames::InputImage, "Image input", Utils::TypeInfo::get<Core::IImage>(true), false,
                unlimited);
    createOutput(SharpnessNames::OutputSharpness, "Sharpness", Utils::TypeInfo::get<Core::IFloat>(true), true,
                 unlimited);

    m_impl->converter.MaxNumThreads.SetValue(1);

    m_impl->leftPort = makeAoiPort<LeftRelay>(this, SharpnessNames::AoiLeft, "Area of interest left");
    m_impl->topPort = makeAoiPort<TopRelay>(this, SharpnessNames::AoiTop, "Area of interest top");
    m_impl->widthPort = makeAoiPort<WidthRelay>(this, SharpnessNames::AoiWidth, "Area of interest width");
    m_impl->heightPort = makeAoiPort<HeightRelay>(this, SharpnessNames::AoiHeight, "Area of interest height");
    Detail::publishParameters(m_impl->adapter, *m_impl->lock, m_impl->leftPort, m_impl->topPort,
                              m_impl->widthPort, m_impl->heightPort);
}

SharpnessExtractor::~SharpnessExtractor()
{
    cleanup();
}

Utils::TypeInfo SharpnessExtractor::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<SharpnessExtractor>(mustExist);
}

const void* SharpnessExtractor::getRawPointer() const
{
    return this;
}

void* SharpnessExtractor::getRawPointer()
{
    return this;
}

bool SharpnessExtractor::isSynchronous() const
{
    return true;
}

Core::UpdateOutputs SharpnessExtractor::run(const std::shared_ptr<Core::IGraphUpdate>& update,
                                            Core::ValueMap inputs)
{
    return Detail::runGuarded<Core::Float>(
        update, "Could not extract sharpness data. Reason: ", {&SharpnessNames::OutputSharpness},
        [&] { return extract(inputs); });
}

Core::ValueMap SharpnessExtractor::extract(Core::ValueMap& inputs)
{
    const auto input = inputs.find(SharpnessNames::InputImage);
    if (input == inputs.end() || !input->second.isValid())
        TESSAL_FAIL_CHECK(runChecks, "Input data does not contain an image or input data is not valid.");
    const Utils::TypeInfo imageType = Utils::TypeInfo::get<Core::IImage>(false);
    if (!imageType.isValid())
        throw RUNTIME_EXCEPTION("Requested type is not registered.");
    // Read-only: a writable look would detach, and copy an image that other nodes share.
    const auto* const image =
        static_cast<const Core::IImage*>(std::as_const(input->second).get(imageType, false));
    if (!image)
        throw RUNTIME_EXCEPTION("Could not cast variant value to requested type.");

    if (image->hasError(true))
        return {{SharpnessNames::OutputSharpness,
                 Utils::Variant(Core::Float(image->getError(false), freshLock()))}};

    const uint32_t imageWidth = image->getWidth();
    const uint32_t imageHeight = image->getHeight();
    if (imageWidth == 0 || imageHeight == 0)
        TESSAL_FAIL_CHECK(runChecks, "Input image has no width or height.");
    const Tarvik::EPixelType type = image->getPixelType();
    if (Tarvik::BitDepth(type) > 16)
        TESSAL_FAIL_CHECK(runChecks, "Input image bit depth is > 16.");

    int64_t left = 0;
    int64_t top = 0;
    int64_t width = 0;
    int64_t height = 0;
    {
        Threading::UniqueLock guard(getLock().get());
        left = m_impl->aoiLeft;
        top = m_impl->aoiTop;
        width = m_impl->aoiWidth;
        height = m_impl->aoiHeight;
        guard.unlock();
    }

    // Not set yet: nothing to give, and nothing wrong.
    if (width == 0 || height == 0)
        return {};
    if (width < 3 || height < 3 || left < 0 || top < 0)
        TESSAL_FAIL_CHECK(runChecks, "AOI is not valid.");
    // Strictly inside: the last row and column never belong to the AOI. A sum beyond
    // the signed 64-bit range lies beyond every image.
    int64_t right = 0;
    int64_t bottom = 0;
    if (__builtin_add_overflow(left, width, &right) || right >= imageWidth ||
        __builtin_add_overflow(top, height, &bottom) || bottom >= imageHeight || width >= imageWidth ||
        height >= imageHeight)
        TESSAL_FAIL_CHECK(runChecks, "AOI is not in image boundaries.");
    const Aoi aoi{static_cast<uint32_t>(left), static_cast<uint32_t>(top), static_cast<uint32_t>(width),
                  static_cast<uint32_t>(height)};

    const Core::ImageDataView<const void> pixels = image->getImageData();
    Tarvik::CTarvikImage view;
    view.AttachUserBuffer(const_cast<void*>(pixels.data), image->getImageSize(), type, imageWidth,
                          imageHeight, pixels.paddingX, Tarvik::ImageOrientation_TopDown, nullptr);

    m_impl->sums = {};
    const Tarvik::EPixelType format = measurableFormat(type);
    const Tarvik::CTarvikImage* measured = &view;
    if (format != Tarvik::PixelType_Undefined)
    {
        m_impl->converter.OutputPixelFormat.SetValue(format);
        m_impl->converter.Convert(m_impl->targetImage, view);
        measured = &m_impl->targetImage;
    }
    m_impl->sums = Detail::measureSharpness(regionOf(*measured, aoi));
    const double sharpness = Detail::sharpnessFigure(m_impl->sums);
    return {{SharpnessNames::OutputSharpness, Utils::Variant(Core::Float(sharpness, freshLock()))}};
}

int64_t SharpnessExtractor::getAoiLeft() const
{
    Threading::ScopedLock guard(*m_impl->lock);
    return m_impl->aoiLeft;
}

void SharpnessExtractor::setAoiLeft(int64_t value)
{
    Detail::storeAndNotify(*m_impl->lock, m_impl->aoiLeft, value, *m_impl->leftPort);
}

int64_t SharpnessExtractor::getAoiTop() const
{
    Threading::ScopedLock guard(*m_impl->lock);
    return m_impl->aoiTop;
}

void SharpnessExtractor::setAoiTop(int64_t value)
{
    Detail::storeAndNotify(*m_impl->lock, m_impl->aoiTop, value, *m_impl->topPort);
}

int64_t SharpnessExtractor::getAoiWidth() const
{
    Threading::ScopedLock guard(*m_impl->lock);
    return m_impl->aoiWidth;
}

void SharpnessExtractor::setAoiWidth(int64_t value)
{
    Detail::storeAndNotify(*m_impl->lock, m_impl->aoiWidth, value, *m_impl->widthPort);
}

int64_t SharpnessExtractor::getAoiHeight() const
{
    Threading::ScopedLock guard(*m_impl->lock);
    return m_impl->aoiHeight;
}

void SharpnessExtractor::setAoiHeight(int64_t value)
{
    Detail::storeAndNotify(*m_impl->lock, m_impl->aoiHeight, value, *m_impl->heightPort);
}

void SharpnessExtractor::load(const std::shared_ptr<Core::ISettings>& settings)
{
    if (!settings)
        return;
    if (settings->contains(SharpnessNames::AoiTop))
        setAoiTop(settings->getInt(SharpnessNames::AoiTop));
    if (settings->contains(SharpnessNames::AoiLeft))
        setAoiLeft(settings->getInt(SharpnessNames::AoiLeft));
    if (settings->contains(SharpnessNames::AoiWidth))
        setAoiWidth(settings->getInt(SharpnessNames::AoiWidth));
    if (settings->contains(SharpnessNames::AoiHeight))
        setAoiHeight(settings->getInt(SharpnessNames::AoiHeight));
}

void SharpnessExtractor::save(const std::shared_ptr<Core::ISettings>& settings)
{
    if (!settings)
        return;
    settings->setInt(SharpnessNames::AoiTop, getAoiTop());
    settings->setInt(SharpnessNames::AoiLeft, getAoiLeft());
    settings->setInt(SharpnessNames::AoiWidth, getAoiWidth());
    settings->setInt(SharpnessNames::AoiHeight, getAoiHeight());
}

std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> SharpnessExtractor::getNodeMaps()
{
    Threading::ScopedLock guard(*m_impl->lock);
    return Detail::tessalNodeMaps(m_impl->adapter);
}

Utils::ISignal<void()>& SharpnessExtractor::getNodeMapsChangedSignal()
{
    return m_impl->nodeMapsChanged;
}

// Registers the class when the library loads: the last step of this unit.
namespace
{
const Utils::TypeRegistrar<SharpnessExtractor, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>, Utils::DirectBase<Core::INodeMapContainer>>
    sharpnessExtractorRegistrar("TarvikViewerTessalPackage::SharpnessExtractor");
} // namespace

} // namespace TarvikViewerTessalPackage
