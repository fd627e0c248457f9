// Runs a Converter, a HistogramExtractor or a SharpnessExtractor on an image over
// exactly the given bytes, whose pixel type, size and padding, and the
// SharpnessExtractor's AOI, come from a small header. Every outcome must be the
// node's output pins with a value or an error value (a figure, an error value or
// nothing for the SharpnessExtractor), and a converted image must hold all the
// bytes it claims; the sanitizers catch any access outside the bytes.
//
// Header, 14 bytes: type selector (4, little-endian; a table index unless its top
// bit is set, then a raw code), width (2), height (1), padding (1), AOI left,
// top, width, height (1 each, signed), AOI flags (1: bit n set puts the nth
// field near the largest signed 64-bit value), node (1: 0 SharpnessExtractor,
// 1 Converter, 2 HistogramExtractor, modulo 3).
#include "built_package.h"
#include "claiming_image.h"
#include "fuzz_support.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <TarvikBase/PixelType.h>
#include <TarvikBase/PixelTypeInfo.h>

#include <cstdlib>
#include <limits>
#include <vector>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr size_t headerSize = 14;

Tarvik::EPixelType pixelType(uint32_t selector)
{
    if (selector & 0x80000000u)
        return static_cast<Tarvik::EPixelType>(selector & 0x7FFFFFFFu);
    const auto table = Tarvik::PixelTypeTable();
    return table[selector % table.size()].type;
}

// The Converter's pins: an error or a Mono8 or BGRa8 image of the input's size,
// all of whose bytes can be read.
void checkConverted(const Core::ValueMap& outputs, uint32_t width, uint32_t height)
{
    const auto found = outputs.find("ImageConverted");
    if (found == outputs.end() || outputs.size() > 2)
        std::abort();
    const auto image = found->second.get<Utils::COWPtr<Core::IImage>>(true);
    if (image->hasError(false))
        return;
    const Tarvik::EPixelType type = image->getPixelType();
    if ((type != Tarvik::PixelType_Mono8 && type != Tarvik::PixelType_BGRa8) || image->getWidth() != width ||
        image->getHeight() != height ||
        image->getImageSize() <
            Tarvik::ComputeBufferSize(type, width, height, image->getImageData().paddingX))
        std::abort();
    const auto* bytes = static_cast<const uint8_t*>(image->getImageData().data);
    const std::vector<uint8_t> copy(bytes, bytes + image->getImageSize());
}

// The HistogramExtractor's pins: "Lum" alone, "Red", "Green" and "Blue", or all four in error state.
void checkHistograms(const Core::ValueMap& outputs)
{
    const size_t colours = outputs.count("Red") + outputs.count("Green") + outputs.count("Blue");
    const size_t lum = outputs.count("Lum");
    if (outputs.size() != colours + lum || !(colours == 3 || lum == 1) || (colours != 0 && colours != 3))
        std::abort();
    for (const auto& [pin, value] : outputs)
        if (!value.isValid())
            std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < headerSize)
        return 0;
    static PackageLoader package(builtPackagePath());
    static const std::shared_ptr<Core::INode> nodes[] = {package.createNode("SharpnessExtractor"),
                                                         package.createNode("Converter"),
                                                         package.createNode("HistogramExtractor")};
    const unsigned which = data[13] % 3;

    const uint32_t selector = data[0] | (data[1] << 8) | (data[2] << 16) | (uint32_t{data[3]} << 24);
    const uint32_t width = (data[4] | (data[5] << 8)) % 1024;
    auto settings = std::make_shared<Core::MemorySettings>();
    const char* const keys[] = {"AoiLeft", "AoiTop", "AoiWidth", "AoiHeight"};
    for (size_t field = 0; field < 4; ++field)
    {
        int64_t value = static_cast<int8_t>(data[8 + field]);
        if (data[12] & (1u << field))
            value += std::numeric_limits<int64_t>::max() - 200;
        settings->setInt(keys[field], value);
    }
    nodes[which]->load(settings);

    Utils::Variant input;
    input.setData(Utils::COWPtr<Core::IImage>(new NodeTestSupport::ClaimingImage(
        pixelType(selector), width, data[6], data[7], std::vector<uint8_t>(data + headerSize, data + size))));
    const auto update = std::make_shared<FuzzSupport::NullUpdate>();
    const Core::UpdateOutputs outputs = nodes[which]->run(update, {{"Image", input}});
    if (outputs.size() != 1)
        std::abort();
    const Core::ValueMap& values = outputs.begin()->second;
    if (which == 0 && values.size() > 1)
        std::abort();
    if (which == 1)
        checkConverted(values, width, data[6]);
    if (which == 2)
        checkHistograms(values);
    return 0;
}
