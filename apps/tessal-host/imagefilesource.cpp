#include "imagefilesource.h"

#include "pngreader.h"
#include "sourceerror.h"

#include <TarvikDataProcessingCore/core/Errors.h>
#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <TarvikViewerDataTypes2/GrabResult.h>

#include <TarvikBase/PixelTypeMapper.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr uint64_t unlimited = ~uint64_t{0};

std::shared_ptr<Threading::RecursiveMutex> newLock()
{
    return std::make_shared<Threading::RecursiveMutex>();
}

bool isPng(const std::filesystem::path& file)
{
    std::string extension = file.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".png";
}

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& path)
{
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error))
        return {path};
    if (!std::filesystem::is_directory(path, error))
        throw SourceError("no image file or folder \"" + path.string() + "\"");
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(path, error))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    if (files.empty())
        throw SourceError("the folder \"" + path.string() + "\" holds no files");
    std::sort(files.begin(), files.end());
    return files;
}

// Reads `size` bytes of the file into `out`.
void readInto(const std::filesystem::path& file, void* out, size_t size)
{
    std::ifstream in(file, std::ios::binary);
    if (!in.read(static_cast<char*>(out), static_cast<std::streamsize>(size)))
        throw std::runtime_error("cannot be read");
}

size_t sizeOf(const std::filesystem::path& file)
{
    std::error_code error;
    const uintmax_t size = std::filesystem::file_size(file, error);
    if (error)
        throw std::runtime_error("cannot be read");
    return size;
}

} // namespace

struct ImageFileSource::Frame
{
    GrabResultDescription description;
    std::shared_ptr<Core::IBuffer> pixels;
};

ImageFileSource::ImageFileSource(const std::shared_ptr<Core::IResourcePool>& resourcePool,
                                 const ImageFileSettings& settings)
    : HostNode(resourcePool)
    , m_settings(settings)
    , m_files(filesOf(settings.path))
{
    const bool hasRaw = std::any_of(m_files.begin(), m_files.end(),
                                    [](const std::filesystem::path& file) { return !isPng(file); });
    if (hasRaw && (settings.rawPixelType == Tarvik::PixelType_Undefined || settings.rawWidth == 0 ||
                   settings.rawHeight == 0))
        throw std::invalid_argument("raw files need \"PixelFormat\", \"Width\" and \"Height\"");
    const auto integerType = Utils::TypeInfo::get<Core::IInteger>(true);
    createOutput("GrabResult", "The frame as a camera would deliver it",
                 Utils::TypeInfo::get<GrabResult>(true), true, unlimited);
    createOutput("PixelFormat", "The frame's pixel format, as a camera's feature",
                 Utils::TypeInfo::get<Core::IString>(true), true, unlimited);
    createOutput("Width", "The frame's width, as a camera's feature", integerType, true, unlimited);
    createOutput("Height", "The frame's height, as a camera's feature", integerType, true, unlimited);
    createOutput("PayloadSize", "The frame's size in bytes, as a camera's feature", integerType, true,
                 unlimited);
    createOutput("Image", "The frame as an image", Utils::TypeInfo::get<Core::IImage>(true), true, unlimited);
}

ImageFileSource::~ImageFileSource()
{
    cleanup();
}

ImageFileSource::Frame ImageFileSource::readPngFile(const std::filesystem::path& file)
{
    std::vector<uint8_t> content(sizeOf(file));
    readInto(file, content.data(), content.size());
    Frame frame;
    const PngFrame png = readPng(content,
                                 [&](const PngFrame&, size_t size)
                                 {
                                     frame.pixels = getBufferProvider()->allocate(size);
                                     return static_cast<uint8_t*>(frame.pixels->getData());
                                 });
    frame.description = {true, png.pixelType, png.width, png.height, 0, frame.pixels->getSize()};
    return frame;
}

ImageFileSource::Frame ImageFileSource::readRawFile(const std::filesystem::path& file)
{
    // The image's own arithmetic: planes, packing, and a layout too large for memory, which it refuses.
    const size_t expected = Tarvik::ComputeBufferSize(m_settings.rawPixelType, m_settings.rawWidth,
                                                      m_settings.rawHeight, m_settings.rawPaddingX);
    const size_t size = sizeOf(file);
    if (size != expected)
        throw std::runtime_error(
            "has " + std::to_string(size) + " bytes, a raw " + std::to_string(m_settings.rawWidth) + "x" +
            std::to_string(m_settings.rawHeight) + " " +
            Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(m_settings.rawPixelType).c_str() +
            " frame with " + std::to_string(m_settings.rawPaddingX) + " bytes of line padding has " +
            std::to_string(expected));
    Frame frame;
    frame.pixels = getBufferProvider()->allocate(expected);
    readInto(file, frame.pixels->getData(), expected);
    frame.description = {
        true,    m_settings.rawPixelType, m_settings.rawWidth, m_settings.rawHeight, m_settings.rawPaddingX,
        expected};
    return frame;
}

Core::UpdateOutputs ImageFileSource::run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap)
{
    const std::filesystem::path& file = m_files[m_nextFrame++ % m_files.size()];
    Frame frame;
    try
    {
        frame = isPng(file) ? readPngFile(file) : readRawFile(file);
    }
    catch (const std::exception& e)
    {
        const auto error = std::make_shared<Core::InvalidValueError>(
            ("image file \"" + file.string() + "\" " + (isPng(file) ? "is not a readable PNG: " : "") +
             e.what())
                .c_str(),
            Utils::DateTime::now());
        Core::ValueMap errors{{"GrabResult", Utils::Variant(GrabResult(error))},
                              {"PixelFormat", Utils::Variant(Core::String(error, newLock()))},
                              {"Width", Utils::Variant(Core::Integer(error, newLock()))},
                              {"Height", Utils::Variant(Core::Integer(error, newLock()))},
                              {"PayloadSize", Utils::Variant(Core::Integer(error, newLock()))}};
        errors["Image"].setData(Utils::COWPtr<Core::IImage>(new Core::Image(error, newLock())));
        return {{update, std::move(errors)}};
    }
    const GrabResultDescription& d = frame.description;
    Utils::Variant image;
    image.setData(Utils::COWPtr<Core::IImage>(
        new Core::Image(d.pixelType, d.width, d.height, d.paddingX, frame.pixels, newLock())));
    return {
        {update,
         {{"GrabResult", Utils::Variant(GrabResult(d, frame.pixels))},
          {"PixelFormat", Utils::Variant(Core::String(
                              Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(d.pixelType), newLock()))},
          {"Width", Utils::Variant(Core::Integer(d.width, newLock()))},
          {"Height", Utils::Variant(Core::Integer(d.height, newLock()))},
          {"PayloadSize", Utils::Variant(Core::Integer(static_cast<int64_t>(d.payloadSize), newLock()))},
          {"Image", image}}}};
}

namespace
{
const Utils::TypeRegistrar<ImageFileSource, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>>
    fileSourceRegistrar("TessalHost::ImageFileSource");
} // namespace
