// The compressed frame format: images come back bit-exact; every damaged or
// mismatched frame is refused with a text that names the fault, and so is a target
// too small, before a byte of the target is written out of place. Buffers are
// sized exactly, so the sanitizer build sees any access beyond them.
#include "../histogram/failure_text.h"
#include "CompressedFrameFormat.h"

#include <GCBase/GCException.h>
#include <TarvikUtility/ImageCompressor.h>
#include <TarvikUtility/ImageDecompressor.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>

using namespace Tarvik;

namespace
{

// A camera-like image: a slow gradient with a little noise, padding included.
std::vector<uint8_t> cameraImage(size_t size, uint32_t seed)
{
    std::mt19937 random(seed);
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<uint8_t>(i / 97 + random() % 4);
    return bytes;
}

CImageDecompressor DecompressorOf(const CImageCompressor& compressor)
{
    const std::vector<uint8_t> descriptor = compressor.GetCompressionDescriptor();
    return CImageDecompressor(descriptor.data(), descriptor.size());
}

} // namespace

TEST(CompressedFrame, GivesBackTheImageBitExact)
{
    struct Format
    {
        EPixelType type;
        uint32_t width;
        uint32_t height;
        size_t paddingX;
        bool rowDelta;
        uint32_t chunkSize;
    };
    const Format formats[] = {{PixelType_Mono8, 64, 48, 0, true, 128 * 1024},
                              // Chunks that end inside rows, and rows longer than a chunk.
                              {PixelType_Mono12, 100, 37, 0, true, 1000},
                              {PixelType_Mono12, 700, 3, 0, true, 1000},
                              {PixelType_BayerRG12p, 66, 20, 0, true, 333},
                              {PixelType_RGB8, 31, 17, 5, true, 128 * 1024},
                              {PixelType_RGB8, 31, 17, 5, false, 256}};
    for (const Format& f : formats)
    {
        SCOPED_TRACE(testing::Message() << f.width << "x" << f.height << " in chunks of " << f.chunkSize);
        const size_t size = ComputeBufferSize(f.type, f.width, f.height, f.paddingX);
        const std::vector<uint8_t> image = cameraImage(size, f.width);
        CImageCompressor compressor(1, f.rowDelta, f.chunkSize);
        const std::vector<uint8_t> frame =
            compressor.CompressImage(image.data(), size, f.type, f.width, f.height, f.paddingX);
        EXPECT_LT(frame.size(), size) << "a smooth image should shrink";

        CompressionInfo_t info;
        ASSERT_TRUE(CImageDecompressor::GetCompressionInfo(info, frame.data(), frame.size(), 2));
        EXPECT_TRUE(info.hasCompressedImage);
        EXPECT_EQ(info.compressionStatus, 0u);
        EXPECT_EQ(info.pixelType, f.type);
        EXPECT_EQ(info.width, f.width);
        EXPECT_EQ(info.height, f.height);
        EXPECT_EQ(info.paddingX, f.paddingX);

        CImageDecompressor decompressor = DecompressorOf(compressor);
        // A target larger than the image: the bytes after it stay as they were.
        std::vector<uint8_t> target(size + 3, 0xA5);
        size_t targetSize = target.size();
        decompressor.DecompressImage(target.data(), targetSize, frame.data(), frame.size());
        EXPECT_EQ(targetSize, size);
        EXPECT_TRUE(std::equal(image.begin(), image.end(), target.begin()));
        EXPECT_EQ(std::vector<uint8_t>(target.begin() + size, target.end()), std::vector<uint8_t>(3, 0xA5));

        // A target one byte short is refused before a byte of it is written.
        std::vector<uint8_t> shortTarget(size - 1, 7);
        size_t shortSize = shortTarget.size();
        EXPECT_THROW(decompressor.DecompressImage(shortTarget.data(), shortSize, frame.data(), frame.size()),
                     GenICam::InvalidArgumentException);
        EXPECT_EQ(shortTarget, std::vector<uint8_t>(size - 1, 7));
    }
}

namespace
{

template <typename Field>
void setField(std::vector<uint8_t>& frame, size_t offset, Field value)
{
    std::memcpy(frame.data() + offset, &value, sizeof value);
}

void reseal(std::vector<uint8_t>& frame)
{
    uint64_t bodySize = 0;
    std::memcpy(&bodySize, frame.data() + 40, sizeof bodySize);
    setField<uint64_t>(frame, CompressedFrame::checksumOffset,
                       CompressedFrame::frameChecksum(
                           frame.data(), frame.data() + CompressedFrame::headerSize,
                           std::min<size_t>(bodySize, frame.size() - CompressedFrame::headerSize)));
}

} // namespace

TEST(CompressedFrame, DamagedFramesAreRefusedWithATextThatNamesTheFault)
{
    struct Damage
    {
        const char* what;
        std::function<void(std::vector<uint8_t>& frame)> apply;
        const char* messagePart;
        // A new checksum, so that a damage behind it is found by its own check.
        bool resealed = false;
    };
    const Damage damages[] = {
        {"magic", [](auto& f) { f[0] = 'X'; }, "the magic is missing"},
        {"header cut", [](auto& f) { f.resize(50); }, "ends inside its header of 56 bytes"},
        {"version", [](auto& f) { f[4] = 2; }, "version 2 is not supported"},
        {"status", [](auto& f) { f[6] = 3; }, "compression status 3"},
        {"codec", [](auto& f) { f[8] = 9; }, "does not match its descriptor"},
        {"filter", [](auto& f) { f[9] = 0; }, "does not match its descriptor"},
        {"chunk size", [](auto& f) { setField<uint32_t>(f, 12, 1024); }, "does not match its descriptor"},
        {"reserved", [](auto& f) { f[10] = 1; }, "reserved field"},
        {"pixel type", [](auto& f) { setField<uint32_t>(f, 16, 0x01080099); },
         "undefined pixel type 0x01080099"},
        {"width", [](auto& f) { setField<uint32_t>(f, 20, 41); }, "its format needs 1230 bytes"},
        {"height", [](auto& f) { setField<uint32_t>(f, 24, 0x40000000); }, "its format needs"},
        {"padding", [](auto& f) { setField<uint32_t>(f, 28, 1); }, "its format needs 1230 bytes"},
        {"image size", [](auto& f) { setField<uint64_t>(f, 32, 1199); }, "an image of 1199 bytes"},
        {"body size", [](auto& f) { setField<uint64_t>(f, 40, f.size()); }, "is cut off"},
        {"body cut", [](auto& f) { f.pop_back(); }, "is cut off"},
        {"checksum", [](auto& f) { f[50] ^= 1; }, "checksum"},
        {"body byte", [](auto& f) { f[f.size() - 9] ^= 0x40; }, "checksum"},
        {"body short of the image",
         [](auto& f) { setField<uint64_t>(f, 40, f.size() - CompressedFrame::headerSize - 1); },
         "holds no valid chunk", true},
        {"zstd damaged behind a good checksum", [](auto& f) { f[CompressedFrame::headerSize + 1] ^= 0xFF; },
         "Compressed frame", true},
        {"bytes after the image",
         [](auto& f)
         {
             f.insert(f.end(), {0x28, 0xB5, 0x2F, 0xFD});
             setField<uint64_t>(f, 40, f.size() - CompressedFrame::headerSize);
         },
         "left after the image", true}};
    const size_t size = ComputeBufferSize(PixelType_Mono8, 40, 30, 0);
    const std::vector<uint8_t> image = cameraImage(size, 3);
    CImageCompressor compressor(1, true, 512);
    CImageDecompressor decompressor = DecompressorOf(compressor);
    for (const Damage& damage : damages)
    {
        SCOPED_TRACE(damage.what);
        std::vector<uint8_t> frame = compressor.CompressImage(image.data(), size, PixelType_Mono8, 40, 30, 0);
        damage.apply(frame);
        if (damage.resealed)
            reseal(frame);
        std::vector<uint8_t> target(size);
        size_t targetSize = target.size();
        EXPECT_THAT(
            failureOf(
                [&] { decompressor.DecompressImage(target.data(), targetSize, frame.data(), frame.size()); }),
            testing::HasSubstr(damage.messagePart));
        EXPECT_EQ(targetSize, size);
    }
}

TEST(CompressedFrame, InfoTellsFramesFromOtherBytesAndReportsUnreadableHeaders)
{
    CImageCompressor compressor;
    const std::vector<uint8_t> empty = compressor.CompressImage(nullptr, 0, PixelType_Mono8, 0, 5, 0);
    std::vector<uint8_t> newer = compressor.CompressImage(nullptr, 0, PixelType_Mono8, 0, 5, 0);
    newer[4] = 2;
    std::vector<uint8_t> widened =
        compressor.CompressImage(std::vector<uint8_t>(15).data(), 15, PixelType_Mono8, 3, 5, 0);
    widened[23] = 0xEE; // the width's top byte: gigabytes no sender meant
    struct Case
    {
        std::vector<uint8_t> bytes;
        bool recognised;
        bool hasImage;
        uint32_t status;
    };
    const Case cases[] = {
        {{}, false, false, 0},
        {{'T', 'V', 'C'}, false, false, 0},
        {std::vector<uint8_t>(100, 0), false, false, 0},
        {{'T', 'V', 'C', 'F', 1, 0}, true, true, CompressionStatus_HeaderIncomplete},
        {newer, true, true, CompressionStatus_VersionNotSupported},
        {widened, true, true, CompressionStatus_HeaderInconsistent},
        {empty, true, false, 0},
    };
    for (const Case& c : cases)
    {
        CompressionInfo_t info;
        info.width = 99;
        EXPECT_EQ(CImageDecompressor::GetCompressionInfo(info, c.bytes.data(), c.bytes.size(), 2),
                  c.recognised);
        EXPECT_EQ(info.hasCompressedImage, c.hasImage);
        EXPECT_EQ(info.compressionStatus, c.status);
        EXPECT_EQ(info.width, 0u);
    }
    CompressionInfo_t info;
    EXPECT_THROW(CImageDecompressor::GetCompressionInfo(info, empty.data(), empty.size(), 1),
                 GenICam::InvalidArgumentException);
}

TEST(CompressedFrame, DescriptorsThatAreNoneAreRefusedByName)
{
    std::vector<uint8_t> good = CImageCompressor().GetCompressionDescriptor();
    std::vector<uint8_t> otherCodec = good;
    otherCodec[6] = 7;
    std::vector<uint8_t> otherMagic = good;
    otherMagic[0] = 'x';
    const std::pair<std::vector<uint8_t>, const char*> cases[] = {
        {{}, "Compression descriptor is empty."},
        {std::vector<uint8_t>(good.begin(), good.end() - 1), "has 11 bytes instead of 12"},
        {otherMagic, "does not start with its magic"},
        {otherCodec, "names codec 7"},
    };
    for (const auto& [bytes, message] : cases)
    {
        EXPECT_THAT(
            failureOf([&] { CImageDecompressor decompressor(bytes.data(), bytes.size()); }),
            testing::AllOf(testing::StartsWith("InvalidArgumentException: "), testing::HasSubstr(message)));
    }
}
