#include <TarvikUtility/ImageFormatConverter.h>

#include "ConversionEngine.h"
#include "ConverterPort.h"
#include "ConverterRegisterDescription.h"
#include "ConverterSettingsStore.h"

#include <GCBase/GCException.h>
#include <GenApi/NodeMapFactory.h>
#include <GenApi/NodeMapRef.h>
#include <TarvikBase/PixelTypeMapper.h>

#include <mutex>

namespace Tarvik
{

struct CImageFormatConverter::Impl
{
    Conversion::ConverterSettingsStore settings;
    Conversion::ConverterPort port{settings};
    std::once_flag nodeMapBuilt;
    // Declared after the port, so the map is gone before the port it calls.
    GenApi::CNodeMapRef nodeMap{"ImageFormatConverter"};
};

namespace
{

using Conversion::TargetKind;

std::optional<TargetKind> TargetKindOf(EPixelType type)
{
    switch (type)
    {
    case PixelType_Mono8:
        return TargetKind::Mono8;
    case PixelType_Mono16:
        return TargetKind::Mono16;
    case PixelType_RGB8:
        return TargetKind::RGB8;
    case PixelType_RGB16:
        return TargetKind::RGB16;
    case PixelType_BGRa8:
        return TargetKind::BGRa8;
    default:
        return std::nullopt;
    }
}

GenICam::gcstring NameOf(EPixelType type)
{
    const GenICam::gcstring name = CPixelTypeMapper::GetNameByTarvikPixelType(type);
    return name.empty() ? GenICam::gcstring("unknown") : name;
}

// Bytes a buffer must hold: every row with its padding but the last row's.
size_t RequiredBytes(EPixelType type, uint32_t width, uint32_t height, size_t paddingX)
{
    return ComputeBufferSize(type, width, height, paddingX) - paddingX;
}

void CheckBuffer(const char* role, size_t size, EPixelType type, uint32_t width, uint32_t height,
                 size_t paddingX)
{
    const size_t required = RequiredBytes(type, width, height, paddingX);
    if (size < required)
    {
        throw INVALID_ARGUMENT_EXCEPTION("%s buffer of %zu bytes is too small for %u x %u pixels of %s with "
                                         "padding %zu: %zu bytes needed",
                                         role, size, width, height, NameOf(type).c_str(), paddingX, required);
    }
}

struct CheckedConversion
{
    Conversion::SourceFormat source;
    TargetKind target;
};

CheckedConversion CheckConversion(const ImageFormatConverterSettings& settings, EPixelType sourceType,
                                  uint32_t width, uint32_t height, EImageOrientation sourceOrientation)
{
    if (width == 0 || height == 0)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Image of %u x %u pixels has no width or height", width, height);
    }
    const std::optional<Conversion::SourceFormat> source = Conversion::DescribeSource(sourceType);
    if (!source)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Source pixel type 0x%08X (%s) cannot be converted",
                                         static_cast<unsigned>(sourceType), NameOf(sourceType).c_str());
    }
    const std::optional<TargetKind> target = TargetKindOf(settings.outputPixelFormat);
    if (!target)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Output pixel format 0x%08X (%s) is not supported",
                                         static_cast<unsigned>(settings.outputPixelFormat),
                                         NameOf(settings.outputPixelFormat).c_str());
    }
    if (sourceOrientation != ImageOrientation_TopDown && sourceOrientation != ImageOrientation_BottomUp)
    {
        throw INVALID_ARGUMENT_EXCEPTION("Source orientation %u is neither top-down (0) nor bottom-up (1)",
                                         static_cast<unsigned>(sourceOrientation));
    }
    return {*source, *target};
}

void ConvertWith(const ImageFormatConverterSettings& settings, void* target, size_t targetSize,
                 const void* source, size_t sourceSize, EPixelType sourceType, uint32_t width,
                 uint32_t height, size_t sourcePaddingX, EImageOrientation sourceOrientation)
{
    if (target == nullptr || source == nullptr)
    {
        throw INVALID_ARGUMENT_EXCEPTION("%s buffer is null", target == nullptr ? "Target" : "Source");
    }
    const CheckedConversion checked = CheckConversion(settings, sourceType, width, height, sourceOrientation);
    CheckBuffer("Source", sourceSize, sourceType, width, height, sourcePaddingX);
    CheckBuffer("Target", targetSize, settings.outputPixelFormat, width, height, settings.outputPaddingX);

    size_t sourceStride = 0;
    size_t targetStride = 0;
    ComputeStride(sourceStride, sourceType, width, sourcePaddingX);
    ComputeStride(targetStride, settings.outputPixelFormat, width, settings.outputPaddingX);
    const bool planar = checked.source.packing == PixelPacking::Planar;

    const Conversion::ConversionJob job{
        Conversion::SourceImage{static_cast<const uint8_t*>(source), sourceStride,
                                planar ? sourceStride * height : 0, width, height, checked.source},
        Conversion::TargetImage{static_cast<uint8_t*>(target), targetStride, width, height, checked.target},
        settings, sourceOrientation != settings.outputOrientation};
    Conversion::RunConversion(job);
}

} // namespace

CImageFormatConverter::CImageFormatConverter()
    : OutputPixelFormat(*this, EConverterSetting::OutputPixelFormat)
    , OutputPaddingX(*this, EConverterSetting::OutputPaddingX)
    , OutputOrientation(*this, EConverterSetting::OutputOrientation)
    , OutputBitAlignment(*this, EConverterSetting::OutputBitAlignment)
    , InconvertibleEdgeHandling(*this, EConverterSetting::InconvertibleEdgeHandling)
    , MaxNumThreads(*this, EConverterSetting::MaxNumThreads)
    , m_impl(std::make_unique<Impl>())
{
}

CImageFormatConverter::~CImageFormatConverter() = default;

void CImageFormatConverter::Convert(void* target, size_t targetSize, const void* source, size_t sourceSize,
                                    EPixelType sourceType, uint32_t width, uint32_t height,
                                    size_t sourcePaddingX, EImageOrientation sourceOrientation)
{
    ConvertWith(m_impl->settings.Snapshot(), target, targetSize, source, sourceSize, sourceType, width,
                height, sourcePaddingX, sourceOrientation);
}

void CImageFormatConverter::Convert(CTarvikImage& target, const CTarvikImage& source)
{
    if (!source.IsValid())
    {
        throw INVALID_ARGUMENT_EXCEPTION("Source image has no buffer");
    }
    const ImageFormatConverterSettings settings = m_impl->settings.Snapshot();
    CheckConversion(settings, source.GetPixelType(), source.GetWidth(), source.GetHeight(),
                    source.GetOrientation());
    // A target that owns a buffer of the very layout, apart from the source's,
    // is written in place: a caller that converts frame after frame keeps one buffer.
    const bool reusable =
        target.IsValid() && !target.IsUserBufferAttached() && target.GetBuffer() != source.GetBuffer() &&
        target.GetPixelType() == settings.outputPixelFormat && target.GetWidth() == source.GetWidth() &&
        target.GetHeight() == source.GetHeight() && target.GetPaddingX() == settings.outputPaddingX &&
        target.GetOrientation() == settings.outputOrientation;
    if (reusable)
    {
        ConvertWith(settings, target.GetBuffer(), target.GetBufferSize(), source.GetBuffer(),
                    source.GetBufferSize(), source.GetPixelType(), source.GetWidth(), source.GetHeight(),
                    source.GetPaddingX(), source.GetOrientation());
        return;
    }
    // Otherwise converted into a new image first: a failure leaves `target`
    // alone, and `target` may be `source` itself.
    CTarvikImage converted(settings.outputPixelFormat, source.GetWidth(), source.GetHeight(),
                           settings.outputPaddingX, settings.outputOrientation);
    ConvertWith(settings, converted.GetBuffer(), converted.GetBufferSize(), source.GetBuffer(),
                source.GetBufferSize(), source.GetPixelType(), source.GetWidth(), source.GetHeight(),
                source.GetPaddingX(), source.GetOrientation());
    target = std::move(converted);
}

size_t CImageFormatConverter::GetBufferSizeForConversion(uint32_t width, uint32_t height) const
{
    const ImageFormatConverterSettings settings = m_impl->settings.Snapshot();
    return ComputeBufferSize(settings.outputPixelFormat, width, height, settings.outputPaddingX);
}

GenApi::INodeMap* CImageFormatConverter::GetNodeMap()
{
    std::call_once(m_impl->nodeMapBuilt,
                   [this]
                   {
                       const std::string description = Conversion::BuildConverterRegisterDescription();
                       GenApi::CNodeMapFactory factory(GenApi::ContentType_Xml, description.data(),
                                                       description.size());
                       m_impl->nodeMap = factory.CreateNodeMap("ImageFormatConverter");
                       m_impl->nodeMap._Connect(&m_impl->port, Conversion::kConverterPortName);
                   });
    return m_impl->nodeMap._Ptr;
}

void CConverterParameter::SetIntValue(int64_t value)
{
    m_owner->m_impl->settings.Set(m_setting, value);
    // Features of the node map that watch this setting learn of the change.
    m_owner->m_impl->port.InvalidateNode();
}

int64_t CConverterParameter::GetIntValue() const
{
    return m_owner->m_impl->settings.Get(m_setting);
}

} // namespace Tarvik
