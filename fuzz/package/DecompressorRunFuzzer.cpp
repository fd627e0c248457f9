// Runs the Decompressor node of the built package on grab results whose
// description, buffer, hints and compression data come from the input. Whatever
// arrives, run() must return one image on "Image", good or in error state; the
// sanitizers catch any access outside the exactly sized buffer.
//
// Input, little-endian: flags (1: bit 0 grab succeeded, 1 FixImage, 2 error
// state, 3 no buffer, 4 descriptor given, 5 it is the compressor's (else empty),
// 6 it is of a wrong type), hint pins (1: bits 0-4 grabber, camera, format,
// width and height given; bits 5-7 format, width and height of a wrong type),
// pixel type (1: table index, 0xFF undefined), format name (1), width (2),
// height (2), padding (1), payload size (4), grabber hint (4, signed), camera
// hint (4, signed), width hint (2, signed), height hint (2, signed). The rest is
// the buffer.
#include "built_package.h"
#include "fuzz_support.h"
#include "packageloader.h"

#include <TarvikBase/PixelTypeInfo.h>
#include <TarvikDataProcessingCore/core/IResourcePool.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikUtility/ImageCompressor.h>
#include <TarvikViewerDataTypes2/CompressionDescriptor.h>
#include <TarvikViewerDataTypes2/GrabResult.h>

#include <GCBase/GCException.h>

#include <cstdlib>
#include <cstring>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr size_t headerSize = 25;

struct Fixture
{
    PackageLoader package{builtPackagePath()};
    std::shared_ptr<Core::INode> node = package.createNode(
        "Decompressor",
        std::make_shared<Core::ResourcePool>(std::make_shared<FuzzSupport::BoundedBufferProvider>()));
    std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<FuzzSupport::NullUpdate>();
    std::vector<uint8_t> descriptor = Tarvik::CImageCompressor().GetCompressionDescriptor();
};

template <typename T>
T read(const uint8_t* data)
{
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

Tarvik::EPixelType pixelType(uint8_t selector)
{
    const auto table = Tarvik::PixelTypeTable();
    return selector == 0xFF ? Tarvik::PixelType_Undefined : table[selector % table.size()].type;
}

const char* const formatNames[] = {"Undefined", "Mono8",    "Mono12p", "BayerRG12p", "RGB8", "Mono16",
                                   "YUV422_8",  "Nonsense", ""};

Utils::Variant integer(int64_t value)
{
    return Utils::Variant(Core::Integer(value, nullptr));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Fixture fixture;
    if (size < headerSize)
        return 0;
    const uint8_t flags = data[0];
    const uint8_t hints = data[1];

    GrabResultDescription description;
    description.grabSucceeded = flags & 1;
    description.pixelType = pixelType(data[2]);
    description.width = read<uint16_t>(data + 4);
    description.height = read<uint16_t>(data + 6);
    description.paddingX = data[8];
    description.payloadSize = read<uint32_t>(data + 9);

    std::shared_ptr<Core::IBuffer> buffer;
    if (!(flags & 8))
    {
        buffer = Core::AlignedBufferProvider().allocate(size - headerSize);
        std::memcpy(buffer->getData(), data + headerSize, size - headerSize);
    }
    Core::ValueMap inputs;
    if (flags & 4)
        inputs["GrabResult"] = Utils::Variant(
            GrabResult(std::make_shared<Core::InvalidValueError>("fuzzed", Utils::DateTime::now())));
    else
        inputs["GrabResult"] = Utils::Variant(GrabResult(description, buffer));
    if (flags & 16)
        inputs["CompressionDescriptor"] =
            (flags & 64) ? integer(1)
                         : Utils::Variant((flags & 32) ? CompressionDescriptor(fixture.descriptor)
                                                       : CompressionDescriptor());
    if (hints & 1)
        inputs["RepairHintPayloadSizeStreamGrabber"] = integer(read<int32_t>(data + 13));
    if (hints & 2)
        inputs["RepairHintPayloadSizeCamera"] = integer(read<int32_t>(data + 17));
    if (hints & 4)
        inputs["RepairHintPixelFormat"] =
            (hints & 32)
                ? integer(data[3])
                : Utils::Variant(Core::String(formatNames[data[3] % std::size(formatNames)], nullptr));
    if (hints & 8)
        inputs["RepairHintWidth"] =
            (hints & 64) ? Utils::Variant(Core::String("640", nullptr)) : integer(read<int16_t>(data + 21));
    if (hints & 16)
        inputs["RepairHintHeight"] = (hints & 128) ? Utils::Variant() : integer(read<int16_t>(data + 23));

    auto settings = std::make_shared<Core::MemorySettings>();
    settings->setBool("FixImage", flags & 2);
    fixture.node->load(settings);

    const auto outputs = fixture.node->run(fixture.update, std::move(inputs));
    const auto& values = outputs.at(fixture.update);
    if (values.size() != 1 || !values.at("Image").isValid())
        __builtin_trap();
    return 0;
}
