// Converts arbitrary bytes as an image whose pixel type, size, padding and
// settings come from a small header, into a buffer and into an image. Every
// refusal must be a GenICam exception; the sanitizers catch any access outside
// the exactly sized buffers.
//
// Header, 11 bytes: type selector (4, little-endian; a table index unless its
// top bit is set, then a raw code), width (2), height (1), source padding (1),
// output selector (1), flags (1: bit 0 MSB-aligned, bit 1 extrapolate, bit 2
// bottom-up source, bit 3 bottom-up output, bit 4 two threads), target shortfall
// (1). The rest is the source buffer, used at exactly its size.
#include <GCBase/GCException.h>
#include <TarvikBase/PixelTypeInfo.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <cstddef>
#include <cstdint>
#include <vector>

using namespace Tarvik;

namespace
{

constexpr size_t kHeaderSize = 11;
constexpr EPixelType kOutputs[] = {PixelType_Mono8, PixelType_Mono16, PixelType_RGB8, PixelType_RGB16,
                                   PixelType_BGRa8};

EPixelType SourceType(uint32_t selector)
{
    if (selector & 0x80000000u)
    {
        return static_cast<EPixelType>(selector & 0x7FFFFFFFu);
    }
    const auto table = PixelTypeTable();
    return table[selector % table.size()].type;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < kHeaderSize)
    {
        return 0;
    }
    const uint32_t selector = data[0] | (data[1] << 8) | (data[2] << 16) | (uint32_t{data[3]} << 24);
    const EPixelType type = SourceType(selector);
    const uint32_t width = (data[4] | (data[5] << 8)) % 1024;
    const uint32_t height = data[6];
    const size_t paddingX = data[7];
    const EPixelType output = kOutputs[data[8] % std::size(kOutputs)];
    const uint8_t flags = data[9];
    const size_t shortfall = data[10];
    // A copy of exactly the given bytes, so that reading past them is caught.
    const std::vector<uint8_t> source(data + kHeaderSize, data + size);

    CImageFormatConverter converter;
    converter.OutputPixelFormat = output;
    converter.OutputBitAlignment =
        (flags & 1) ? OutputBitAlignment_MsbAligned : OutputBitAlignment_LsbAligned;
    converter.InconvertibleEdgeHandling =
        (flags & 2) ? InconvertibleEdgeHandling_Extrapolate : InconvertibleEdgeHandling_SetZero;
    converter.OutputOrientation = (flags & 8) ? ImageOrientation_BottomUp : ImageOrientation_TopDown;
    converter.MaxNumThreads = (flags & 16) ? 2 : 1;
    try
    {
        size_t targetSize = converter.GetBufferSizeForConversion(width, height);
        targetSize -= std::min(targetSize, shortfall);
        std::vector<uint8_t> target(targetSize);
        converter.Convert(target.data(), target.size(), source.data(), source.size(), type, width, height,
                          paddingX, (flags & 4) ? ImageOrientation_BottomUp : ImageOrientation_TopDown);
    }
    catch (const GenICam::GenericException&)
    {
    }

    try
    {
        CTarvikImage image;
        image.AttachUserBuffer(const_cast<uint8_t*>(source.data()), source.size(), type, width, height,
                               paddingX, (flags & 4) ? ImageOrientation_BottomUp : ImageOrientation_TopDown);
        CTarvikImage converted;
        converter.Convert(converted, image);
    }
    catch (const GenICam::GenericException&)
    {
    }
    return 0;
}
