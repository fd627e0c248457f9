// Arbitrary bytes as an image file, a PNG or a raw frame of a fuzzed layout,
// played by the host's file source. Its run must give a frame or an error value
// on every pin, and a frame's image must hold all the bytes it claims; the
// sanitizers catch any access outside them.
//
// Header, 8 bytes: flags (1: bit 0 a PNG, else raw; bit 1 puts the padding near
// the largest size), raw pixel type (1: a table index), width (2), height (2),
// padding (1), unused (1). The rest is the file.
#include "fuzz_support.h"
#include "imagefilesource.h"

#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/core/IResourcePool.h>

#include <TarvikBase/PixelTypeInfo.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr size_t headerSize = 8;

// A folder of this process's own, removed when the fuzzer ends.
const std::filesystem::path& folder()
{
    static const std::filesystem::path path = []
    {
        char name[] = "/tmp/tessal-imagefile-fuzz-XXXXXX";
        if (!mkdtemp(name))
            std::abort();
        std::atexit([] { std::filesystem::remove_all(folder()); });
        return std::filesystem::path(name);
    }();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < headerSize)
        return 0;
    static const auto pool =
        std::make_shared<Core::ResourcePool>(std::make_shared<FuzzSupport::BoundedBufferProvider>());
    const auto table = Tarvik::PixelTypeTable();
    ImageFileSettings settings;
    settings.path = (folder() / ((data[0] & 1) ? "frame.png" : "frame.raw")).string();
    settings.rawPixelType = table[data[1] % table.size()].type;
    settings.rawWidth = data[2] | (data[3] << 8);
    settings.rawHeight = data[4] | (data[5] << 8);
    settings.rawPaddingX = (data[0] & 2) ? std::numeric_limits<size_t>::max() - data[6] : data[6];
    std::ofstream(settings.path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data + headerSize),
               static_cast<std::streamsize>(size - headerSize));

    std::unique_ptr<ImageFileSource> source;
    try
    {
        source = std::make_unique<ImageFileSource>(pool, settings);
    }
    catch (const std::invalid_argument&)
    {
        return 0; // a raw layout without a width or height
    }
    const auto update = std::make_shared<FuzzSupport::NullUpdate>();
    const Core::ValueMap outputs = source->run(update, {}).at(update);
    for (const char* pin : {"GrabResult", "PixelFormat", "Width", "Height", "PayloadSize", "Image"})
        if (outputs.count(pin) != 1 || !outputs.at(pin).isValid())
            std::abort();
    const auto image = outputs.at("Image").get<Utils::COWPtr<Core::IImage>>(true);
    if (!image->hasError(false))
    {
        const Core::ImageDataView<const void> view = std::as_const(*image).getImageData();
        if (image->getImageSize() < Tarvik::ComputeBufferSize(image->getPixelType(), image->getWidth(),
                                                              image->getHeight(), view.paddingX))
            std::abort();
        const auto* const bytes = static_cast<const uint8_t*>(view.data);
        const std::vector<uint8_t> copy(bytes, bytes + image->getImageSize());
    }
    return 0;
}
