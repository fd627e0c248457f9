#include "CompressedFrameFormat.h"

#include <GCBase/GCException.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace Tarvik::CompressedFrame
{

namespace
{

// The machine is little-endian: numbers are copied as they lie in memory.
template <typename T>
T load(const uint8_t* data)
{
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

template <typename T>
void store(uint8_t* data, T value)
{
    std::memcpy(data, &value, sizeof value);
}

constexpr uint64_t prime1 = 0x9E3779B185EBCA87u;
constexpr uint64_t prime2 = 0xC2B2AE3D27D4EB4Fu;
constexpr uint64_t prime3 = 0x165667B19E3779F9u;

uint64_t mixWord(uint64_t accumulator, uint64_t word)
{
    return std::rotl(accumulator + word * prime2, 31) * prime1;
}

// A 64-bit multiply-rotate hash over four independent lanes, so that the loop
// runs at the speed of the loads rather than of one multiplication chain.
uint64_t hashBytes(const uint8_t* data, size_t size, uint64_t seed)
{
    uint64_t lanes[4] = {seed + prime1 + prime2, seed + prime2, seed, seed - prime1};
    size_t i = 0;
    for (; i + 32 <= size; i += 32)
        for (size_t lane = 0; lane < 4; ++lane)
            lanes[lane] = mixWord(lanes[lane], load<uint64_t>(data + i + 8 * lane));
    uint64_t hash = std::rotl(lanes[0], 1) + std::rotl(lanes[1], 7) + std::rotl(lanes[2], 12) +
                    std::rotl(lanes[3], 18) + size;
    for (; i + 8 <= size; i += 8)
        hash = std::rotl(hash ^ mixWord(0, load<uint64_t>(data + i)), 27) * prime1 + prime3;
    for (; i < size; ++i)
        hash = std::rotl(hash ^ (data[i] * prime3), 11) * prime1;
    hash ^= hash >> 33;
    hash *= prime2;
    hash ^= hash >> 29;
    hash *= prime3;
    return hash ^ (hash >> 32);
}

void addBytes(uint8_t* __restrict target, const uint8_t* __restrict source, size_t size)
{
    for (size_t i = 0; i < size; ++i)
        target[i] = static_cast<uint8_t>(target[i] + source[i]);
}

} // namespace

bool startsWithMagic(const void* data, size_t size)
{
    return data && size >= sizeof frameMagic && std::memcmp(data, frameMagic, sizeof frameMagic) == 0;
}

Header readHeader(const uint8_t* data)
{
    Header header;
    header.version = load<uint16_t>(data + 4);
    header.status = load<uint16_t>(data + 6);
    header.codecs.codec = data[8];
    header.codecs.filter = data[9];
    header.reserved = load<uint16_t>(data + 10);
    header.codecs.chunkSize = load<uint32_t>(data + 12);
    header.pixelType = static_cast<EPixelType>(load<uint32_t>(data + 16));
    header.width = load<uint32_t>(data + 20);
    header.height = load<uint32_t>(data + 24);
    header.paddingX = load<uint32_t>(data + 28);
    header.imageSize = load<uint64_t>(data + 32);
    header.bodySize = load<uint64_t>(data + 40);
    header.checksum = load<uint64_t>(data + checksumOffset);
    return header;
}

void writeHeader(uint8_t* data, const Header& header)
{
    std::memcpy(data, frameMagic, sizeof frameMagic);
    store(data + 4, header.version);
    store(data + 6, header.status);
    data[8] = header.codecs.codec;
    data[9] = header.codecs.filter;
    store(data + 10, header.reserved);
    store(data + 12, header.codecs.chunkSize);
    store(data + 16, static_cast<uint32_t>(header.pixelType));
    store(data + 20, header.width);
    store(data + 24, header.height);
    store(data + 28, header.paddingX);
    store(data + 32, header.imageSize);
    store(data + 40, header.bodySize);
    store(data + checksumOffset, header.checksum);
}

std::vector<uint8_t> encodeDescriptor(const Codecs& codecs)
{
    std::vector<uint8_t> bytes(descriptorSize);
    std::memcpy(bytes.data(), descriptorMagic, sizeof descriptorMagic);
    store(bytes.data() + 4, formatVersion);
    bytes[6] = codecs.codec;
    bytes[7] = codecs.filter;
    store(bytes.data() + 8, codecs.chunkSize);
    return bytes;
}

Codecs decodeDescriptor(const void* data, size_t size)
{
    if (!data || size == 0)
        throw INVALID_ARGUMENT_EXCEPTION("Compression descriptor is empty.");
    if (size != descriptorSize)
        throw INVALID_ARGUMENT_EXCEPTION("Compression descriptor has %zu bytes instead of %zu.", size,
                                         descriptorSize);
    const auto* const bytes = static_cast<const uint8_t*>(data);
    if (std::memcmp(bytes, descriptorMagic, sizeof descriptorMagic) != 0)
        throw INVALID_ARGUMENT_EXCEPTION("Compression descriptor does not start with its magic.");
    const uint16_t version = load<uint16_t>(bytes + 4);
    if (version != formatVersion)
        throw INVALID_ARGUMENT_EXCEPTION("Compression descriptor version %u is not supported.",
                                         static_cast<unsigned>(version));
    Codecs codecs{bytes[6], bytes[7], load<uint32_t>(bytes + 8)};
    if (codecs.codec != Codec_Zstd || codecs.filter > Filter_RowDelta || codecs.chunkSize == 0)
        throw INVALID_ARGUMENT_EXCEPTION("Compression descriptor names codec %u, filter %u and chunks of %u "
                                         "bytes, which are not supported.",
                                         static_cast<unsigned>(codecs.codec),
                                         static_cast<unsigned>(codecs.filter),
                                         static_cast<unsigned>(codecs.chunkSize));
    return codecs;
}

uint64_t frameChecksum(const uint8_t* header, const uint8_t* body, size_t bodySize)
{
    return hashBytes(body, bodySize, hashBytes(header, checksumOffset, 0));
}

size_t rowStride(EPixelType type, uint32_t width, size_t paddingX)
{
    size_t stride = 0;
    return ComputeStride(stride, type, width, paddingX) ? stride : 0;
}

void applyRowDelta(uint8_t* target, const uint8_t* image, size_t begin, size_t end, size_t stride)
{
    const size_t firstRowEnd = stride == 0 ? end : std::clamp(stride, begin, end);
    std::memcpy(target, image + begin, firstRowEnd - begin);
    for (size_t i = firstRowEnd; i < end; ++i)
        target[i - begin] = static_cast<uint8_t>(image[i] - image[i - stride]);
}

void undoRowDelta(uint8_t* image, size_t begin, size_t end, size_t stride)
{
    if (stride == 0)
        return;
    // Runs of at most one stride: the bytes added in never overlap those written.
    for (size_t i = std::max(begin, stride); i < end;)
    {
        const size_t run = std::min(end - i, stride);
        addBytes(image + i, image + i - stride, run);
        i += run;
    }
}

} // namespace Tarvik::CompressedFrame
