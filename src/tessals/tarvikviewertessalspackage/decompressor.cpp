#include "decompressor.h"

#include "runguard.h"
#include "tessalnames.h"
#include "tessalnodemap.h"

#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>
#include <TarvikDataProcessingCore/utils/Log.h>

#include <TarvikBase/PixelType.h>
#include <TarvikBase/PixelTypeMapper.h>
#include <TarvikUtility/ImageDecompressor.h>
#include <TarvikViewerDataTypes2/CompressionDescriptor.h>
#include <TarvikViewerDataTypes2/GrabResult.h>

#include <AnythingToNodeMapAdapter/BooleanParameterPortRelay.h>

#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>
#include <tarvikdataprocessingcore/utils/signal_impl.h>

#include <algorithm>
#include <limits>

namespace TarvikViewerTessalPackage
{

using namespace Tarvik::DataProcessing;
namespace DecompressorNames = Names::Decompressor;

namespace
{

constexpr uint64_t unlimited = ~uint64_t{0};
constexpr int littleEndian = 2;

int decompressorCategory()
{
    static const int id = Utils::getCatId("tarvik.dataprocessing.tessal.Decompressor");
    return id;
}

const Detail::RunChecks runChecks("Decompressor", "TarvikViewerTessalPackage::Decompressor::run",
                                  &decompressorCategory);

std::shared_ptr<Threading::RecursiveMutex> freshLock()
{
    return std::make_shared<Threading::RecursiveMutex>();
}

// The pixels need at least this many bytes; padding is left out, so it is a lower bound.
bool passesSizeCheck(const GrabResult& result)
{
    const uint64_t bitsPerPixel = Tarvik::BitPerPixel(result.getPixelType());
    const uint64_t required = (bitsPerPixel * result.getHeight() * result.getWidth() + 7) / 8;
    return required <= result.getPayloadSize() && required <= result.getBufferSize();
}

// The value of an integer hint, 0 if its pin has no entry; an entry of another type raises.
int64_t integerHint(const Core::ValueMap& inputs, const GenICam::gcstring& pin)
{
    const auto entry = inputs.find(pin);
    if (entry == inputs.end())
        return 0;
    const Utils::COWPtr<Core::IInteger> hint = entry->second.get<Utils::COWPtr<Core::IInteger>>(true);
    return hint->getValue();
}

// A width or height hint in the range of an image's, 0 for anything else.
uint32_t extentHint(const Core::ValueMap& inputs, const GenICam::gcstring& pin)
{
    const int64_t value = integerHint(inputs, pin);
    return value > 0 && value <= std::numeric_limits<uint32_t>::max() ? static_cast<uint32_t>(value) : 0;
}

Tarvik::EPixelType pixelTypeHint(const Core::ValueMap& inputs)
{
    const auto entry = inputs.find(DecompressorNames::InputRepairHintPixelFormat);
    if (entry == inputs.end())
        return Tarvik::PixelType_Undefined;
    const Utils::COWPtr<Core::IString> hint = entry->second.get<Utils::COWPtr<Core::IString>>(true);
    return Tarvik::CPixelTypeMapper::GetTarvikPixelTypeByName(hint->getValue());
}

Utils::Variant variantOf(Core::Image* image)
{
    Utils::Variant variant;
    variant.setData(Utils::COWPtr<Core::IImage>(image));
    return variant;
}

} // namespace

struct Decompressor::Impl
{
    using FixImagePort =
        AnythingToNodeMapAdapter::BooleanParameterPortRelay<Decompressor, &Decompressor::isFixImagesEnabled,
                                                            &Decompressor::setFixImagesEnabled>;

    Utils::Signal<void()> nodeMapsChanged;
    AnythingToNodeMapAdapter::CAnythingToNodeMapAdapter adapter;
    std::shared_ptr<FixImagePort> fixImagePort;
    bool fixImagesEnabled = false;
    std::shared_ptr<Threading::RecursiveCLock> lock;
};

Decompressor::Decompressor(const std::shared_ptr<Core::IResourcePool>& resourcePool)
    : AdvancedNode(resourcePool)
    , m_impl(std::make_unique<Impl>())
{
    m_impl->lock = std::make_shared<Threading::RecursiveCLock>();
    setLock(m_impl->lock);

    const Utils::TypeInfo integerType = Utils::TypeInfo::get<Core::IInteger>(true);
    createInput(DecompressorNames::InputGrabResult, "The grab result", Utils::TypeInfo::get<GrabResult>(true),
                false, unlimited);
    createInput(DecompressorNames::InputRepairHintPayloadSizeStreamGrabber,
                "The payload size reported by the stream grabber. Used as image repair hint.", integerType,
                false, unlimited);
    createInput(DecompressorNames::InputRepairHintPixelFormat, "The pixel format. Used as image repair hint.",
                Utils::TypeInfo::get<Core::IString>(true),
                Utils::Variant(Core::String("Undefined", freshLock())), false, false, unlimited);
    createInput(DecompressorNames::InputRepairHintPayloadSizeCamera,
                "The payload size reported by the camera. Used as image repair hint.", integerType, false,
                unlimited);
    createInput(DecompressorNames::InputRepairHintWidth, "The image width. Used as image repair hint.",
                integerType, Utils::Variant(Core::Integer(0, freshLock())), false, false, unlimited);
    createInput(DecompressorNames::InputRepairHintHeight, "The image height. Used as image repair hint.",
                integerType, Utils::Variant(Core::Integer(0, freshLock())), false, false, unlimited);
    createInput(DecompressorNames::InputCompressionDescriptor, "The compression descriptor",
                Utils::TypeInfo::get<CompressionDescriptor>(true), Utils::Variant(CompressionDescriptor()),
                false, false, unlimited);
    createOutput(DecompressorNames::OutputImage, "The decompressed image",
                 Utils::TypeInfo::get<Core::IImage>(true), true, unlimited);

    {
        Threading::ScopedLock guard(*m_impl->lock);
        m_impl->fixImagePort = std::make_shared<Impl::FixImagePort>(
            this, DecompressorNames::FixImage, "Fix image", "Fix image enabled", "Fix image enabled",
            "Expert", true, true, true, true);
        Detail::publishParameters(m_impl->adapter, *m_impl->lock, m_impl->fixImagePort);
    }
    m_impl->nodeMapsChanged();
}

Decompressor::~Decompressor()
{
    cleanup();
}

Utils::TypeInfo Decompressor::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<Decompressor>(mustExist);
}

const void* Decompressor::getRawPointer() const
{
    return this;
}

void* Decompressor::getRawPointer()
{
    return this;
}

bool Decompressor::isSynchronous() const
{
    return true;
}

Core::UpdateOutputs Decompressor::run(const std::shared_ptr<Core::IGraphUpdate>& update,
                                      Core::ValueMap inputs)
{
    bool fixImages = false;
    {
        Threading::UniqueLock guard(getLock().get());
        fixImages = m_impl->fixImagesEnabled;
        guard.unlock();
    }
    return Detail::runGuarded<Core::TarvikImage>(
        update, "Grab result could not be decompressed/repaired. Reason: ", {&DecompressorNames::OutputImage},
        [&] { return process(inputs, fixImages); });
}

Core::ValueMap Decompressor::process(Core::ValueMap& inputs, bool fixImages)
{
    Utils::COWPtr<GrabResult> grabResult =
        inputs[DecompressorNames::InputGrabResult].get<Utils::COWPtr<GrabResult>>(false);
    if (!grabResult.hasObject())
        return {};
    // The writable access: a shared grab result is cloned here, its buffer stays shared.
    GrabResult& result = *grabResult;
    Core::ValueMap outputs;
    if (result.hasError(false))
    {
        outputs[DecompressorNames::OutputImage] =
            Utils::Variant(Core::TarvikImage(result.getError(false), freshLock()));
        return outputs;
    }
    const std::shared_ptr<Core::IBuffer> buffer = result.getBuffer();
    if (!buffer)
        TESSAL_FAIL_CHECK(runChecks, "Grab result has no buffer.");

    Tarvik::CompressionInfo_t info;
    Utils::Variant output;
    const bool compressed = result.grabSucceeded() &&
                            Tarvik::CImageDecompressor::GetCompressionInfo(
                                info, std::as_const(*buffer).getData(),
                                std::min(result.getPayloadSize(), result.getBufferSize()), littleEndian);
    if (compressed && info.hasCompressedImage)
        output = decompress(result, info, inputs);
    else if (!result.grabSucceeded())
    {
        if (!fixImages)
            TESSAL_FAIL_CHECK(runChecks, "Grab result is broken but fix image is set to false.");
        output = repair(result, inputs);
    }
    else
        output = adopt(result);
    outputs[DecompressorNames::OutputImage] = output;
    return outputs;
}

Utils::Variant Decompressor::decompress(GrabResult& result, const Tarvik::CompressionInfo_t& info,
                                        Core::ValueMap& inputs)
{
    const Utils::COWPtr<CompressionDescriptor> descriptor =
        inputs[DecompressorNames::InputCompressionDescriptor].get<Utils::COWPtr<CompressionDescriptor>>(
            false);
    if (!descriptor.hasObject())
        TESSAL_FAIL_CHECK(runChecks,
                          "Grab result is compressed, but no compression descriptor was provided.");
    const std::vector<uint8_t>& descriptorBytes = descriptor->getCompressionDescriptor();
    Tarvik::CImageDecompressor decompressor(descriptorBytes.data(), descriptorBytes.size());
    if (info.compressionStatus != Tarvik::CompressionStatus_Ok)
        TESSAL_FAIL_CHECK(runChecks, "Grab result is compressed, but compression status is not ok.");
    // Written straight into the new image's buffer from the pool.
    Utils::COWPtr<Core::IImage> image(new Core::Image(info.pixelType, info.width, info.height, info.paddingX,
                                                      getBufferProvider(), freshLock()));
    size_t size = image->getImageSize();
    decompressor.DecompressImage(image->getImageData().data, size, result.getBuffer()->getData(),
                                 result.getBufferSize());
    Utils::Variant output;
    output.setData(std::move(image));
    return output;
}

Utils::Variant Decompressor::adopt(GrabResult& result)
{
    if (!passesSizeCheck(result))
        TESSAL_FAIL_CHECK(runChecks, "Grab result reports grab succeeded, but plausibility check failed.");
    if (Tarvik::ComputeBufferSize(result.getPixelType(), result.getWidth(), result.getHeight(),
                                  result.getPaddingX()) > result.getBufferSize())
        TESSAL_FAIL_CHECK(runChecks, "Grab result's buffer is too small for the rows and their padding.");
    return variantOf(new Core::Image(result.getPixelType(), result.getWidth(), result.getHeight(),
                                     result.getPaddingX(), result.getBuffer(), freshLock()));
}

Utils::Variant Decompressor::repair(GrabResult& result, const Core::ValueMap& inputs)
{
    const int64_t cameraSize = integerHint(inputs, DecompressorNames::InputRepairHintPayloadSizeCamera);
    const int64_t grabberSize =
        integerHint(inputs, DecompressorNames::InputRepairHintPayloadSizeStreamGrabber);
    const int64_t payload = grabberSize != 0 ? grabberSize : cameraSize;
    if (payload <= 0)
        TESSAL_FAIL_CHECK(runChecks, "Repair hints are not conclusive.");

    Tarvik::EPixelType pixelType = result.getPixelType();
    uint32_t width = result.getWidth();
    uint32_t height = result.getHeight();
    if (pixelType == Tarvik::PixelType_Undefined || width == 0 || height == 0)
    {
        pixelType = pixelTypeHint(inputs);
        width = extentHint(inputs, DecompressorNames::InputRepairHintWidth);
        height = extentHint(inputs, DecompressorNames::InputRepairHintHeight);
        if (pixelType == Tarvik::PixelType_Undefined || width == 0 || height == 0)
            TESSAL_FAIL_CHECK(runChecks, "Repair hints are not conclusive.");
    }
    // The hint may promise more than arrived: take what the buffer holds.
    const size_t taken =
        std::min(static_cast<uint64_t>(payload), static_cast<uint64_t>(result.getBufferSize()));
    const std::shared_ptr<const Core::IBuffer> buffer = std::as_const(result).getBuffer();
    return variantOf(new Core::Image(buffer->getData(), taken, pixelType, width, height, result.getPaddingX(),
                                     result.getPaddingX(), getBufferProvider(), freshLock()));
}

bool Decompressor::isFixImagesEnabled() const
{
    Threading::ScopedLock guard(*m_impl->lock);
    return m_impl->fixImagesEnabled;
}

void Decompressor::setFixImagesEnabled(bool enabled)
{
    Threading::ScopedLock guard(*m_impl->lock);
    m_impl->fixImagesEnabled = enabled;
}

void Decompressor::load(const std::shared_ptr<Core::ISettings>& settings)
{
    if (!settings)
        return;
    if (settings->contains(DecompressorNames::FixImage))
        setFixImagesEnabled(settings->getBool(DecompressorNames::FixImage));
}

void Decompressor::save(const std::shared_ptr<Core::ISettings>& settings)
{
    if (!settings)
        return;
    settings->setBool(DecompressorNames::FixImage, isFixImagesEnabled());
}

std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> Decompressor::getNodeMaps()
{
    return Detail::tessalNodeMaps(m_impl->adapter);
}

Utils::ISignal<void()>& Decompressor::getNodeMapsChangedSignal()
{
    return m_impl->nodeMapsChanged;
}

// Registers the class when the library loads: the last step of this unit.
namespace
{
const Utils::TypeRegistrar<Decompressor, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>, Utils::DirectBase<Core::INodeMapContainer>>
    decompressorRegistrar("TarvikViewerTessalPackage::Decompressor");
} // namespace

} // namespace TarvikViewerTessalPackage
