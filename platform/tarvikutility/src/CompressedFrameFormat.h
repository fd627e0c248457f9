// The compressed frame format, shared by the compressor and the decompressor.
//
// A frame is a header of `headerSize` bytes followed by a body; all numbers are
// little-endian:
//
//   offset size  field
//        0    4  magic "TVCF"
//        4    2  version, 1
//        6    2  status: 0 ok, else the camera's code for a compression that failed
//        8    1  codec (1: zstd)      9 1  filter (0: none, 1: row delta)
//       10    2  reserved, 0         12 4  chunk size: image bytes per zstd frame at most
//       16    4  pixel type          20 4  width
//       24    4  height              28 4  padding after each row, in bytes
//       32    8  image size: bytes of the image with padding, as its format gives them
//       40    8  body size: bytes of the body
//       48    8  checksum of header bytes 0 to 47 and of the body
//
// The body is a run of independent zstd frames, one per chunk of the image in
// order, each holding at most `chunk size` bytes and stating its content size. A
// chunk never refers to another one, so a decompressor can write each chunk
// straight into the image and undo the filter on it while it is still in cache.
//
// Row delta: byte i of the image, i at least one row stride, is stored as its
// difference (mod 256) to byte i - stride, the same byte of the row before; the
// first row is stored as it is. Rows include their padding.
//
// A compression descriptor is `descriptorSize` bytes: magic "TVCD", version (2),
// codec (1), filter (1), chunk size (4). A frame matches a descriptor when codec,
// filter and chunk size agree.
#pragma once

#include <TarvikBase/PixelType.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tarvik::CompressedFrame
{

constexpr char frameMagic[4] = {'T', 'V', 'C', 'F'};
constexpr char descriptorMagic[4] = {'T', 'V', 'C', 'D'};
constexpr uint16_t formatVersion = 1;
constexpr size_t headerSize = 56;
constexpr size_t checksumOffset = 48;
constexpr size_t descriptorSize = 12;

enum Codec : uint8_t
{
    Codec_Zstd = 1,
};

enum Filter : uint8_t
{
    Filter_None = 0,
    Filter_RowDelta = 1,
};

struct Codecs
{
    uint8_t codec = Codec_Zstd;
    uint8_t filter = Filter_RowDelta;
    uint32_t chunkSize = 0;

    bool operator==(const Codecs&) const = default;
};

struct Header
{
    uint16_t version = formatVersion;
    uint16_t status = 0;
    Codecs codecs;
    uint16_t reserved = 0;
    EPixelType pixelType = PixelType_Undefined;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t paddingX = 0;
    uint64_t imageSize = 0;
    uint64_t bodySize = 0;
    uint64_t checksum = 0;
};

bool startsWithMagic(const void* data, size_t size);

// Reads the header fields from `headerSize` bytes; checks nothing.
Header readHeader(const uint8_t* data);
void writeHeader(uint8_t* data, const Header& header);

std::vector<uint8_t> encodeDescriptor(const Codecs& codecs);
// Raises GenICam::InvalidArgumentException naming what is wrong with the bytes.
Codecs decodeDescriptor(const void* data, size_t size);

// The checksum of header bytes 0 to checksumOffset - 1 and of the body.
uint64_t frameChecksum(const uint8_t* header, const uint8_t* body, size_t bodySize);

// Bytes from one row to the next, the line of the row delta; 0 for an unknown type.
size_t rowStride(EPixelType type, uint32_t width, size_t paddingX);

// The filtered bytes [begin, end) of `image` into `target`.
void applyRowDelta(uint8_t* target, const uint8_t* image, size_t begin, size_t end, size_t stride);
// Undoes the filter in place on [begin, end) of `image`, whose bytes before `begin` are restored.
void undoRowDelta(uint8_t* image, size_t begin, size_t end, size_t stride);

} // namespace Tarvik::CompressedFrame
