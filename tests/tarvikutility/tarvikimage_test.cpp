// CTarvikImage: owned and attached buffers, regions of every layout, and the
// converter sizing a target image itself.
#include <GCBase/GCException.h>
#include <TarvikUtility/ImageFormatConverter.h>
#include <TarvikUtility/TarvikImage.h>

#include <gtest/gtest.h>

using namespace Tarvik;
using Bytes = std::vector<uint8_t>;

namespace
{

Bytes Pixels(const CTarvikImage& image)
{
    const auto* data = static_cast<const uint8_t*>(image.GetBuffer());
    return Bytes(data, data + image.GetImageSize());
}

// A Mono8 image 6 x 4 whose pixel (x, y) is 10 y + x, with 2 bytes of padding.
CTarvikImage NumberedMono8(Bytes& storage)
{
    storage.assign(8 * 4, 0xEE);
    for (uint32_t y = 0; y < 4; ++y)
        for (uint32_t x = 0; x < 6; ++x)
            storage[8 * y + x] = static_cast<uint8_t>(10 * y + x);
    CTarvikImage image;
    image.AttachUserBuffer(storage.data(), storage.size(), PixelType_Mono8, 6, 4, 2);
    return image;
}

} // namespace

TEST(CTarvikImage, OwnedImagesAreZeroFilledAlignedAndCopiedDeeply)
{
    CTarvikImage image(PixelType_RGB8, 5, 3, 1);
    EXPECT_EQ(image.GetStride(), 16u);
    EXPECT_EQ(image.GetImageSize(), 48u);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(image.GetBuffer()) % 64, 0u);
    EXPECT_EQ(Pixels(image), Bytes(48, 0));

    CTarvikImage copy(image);
    static_cast<uint8_t*>(copy.GetBuffer())[0] = 9;
    EXPECT_EQ(static_cast<uint8_t*>(image.GetBuffer())[0], 0);

    CTarvikImage moved(std::move(copy));
    EXPECT_EQ(static_cast<uint8_t*>(moved.GetBuffer())[0], 9);
    EXPECT_FALSE(copy.IsValid()); // NOLINT(bugprone-use-after-move): a moved-from image is empty
    moved.Release();
    EXPECT_EQ(moved.GetPixelType(), PixelType_Undefined);
}

TEST(CTarvikImage, AttachedBuffersAreUsedWithoutACopy)
{
    Bytes storage;
    CTarvikImage image = NumberedMono8(storage);
    EXPECT_TRUE(image.IsUserBufferAttached());
    CTarvikImage copy = image;
    EXPECT_EQ(copy.GetBuffer(), storage.data());

    int handler = 0;
    // The padding after the last row need not be there.
    EXPECT_NO_THROW(image.AttachUserBuffer(storage.data(), 30, PixelType_Mono8, 6, 4, 2,
                                           ImageOrientation_BottomUp, &handler));
    EXPECT_EQ(image.GetUserBufferHandler(), &handler);
    EXPECT_EQ(image.GetOrientation(), ImageOrientation_BottomUp);
    EXPECT_THROW(image.AttachUserBuffer(storage.data(), 29, PixelType_Mono8, 6, 4, 2),
                 GenICam::InvalidArgumentException);
    EXPECT_THROW(image.AttachUserBuffer(nullptr, 100, PixelType_Mono8, 6, 4, 2),
                 GenICam::InvalidArgumentException);
    EXPECT_THROW(image.AttachUserBuffer(storage.data(), 100, PixelType_Undefined, 6, 4, 2),
                 GenICam::InvalidArgumentException);
    // A refused attach leaves the image as it was.
    EXPECT_EQ(image.GetBufferSize(), 30u);
}

TEST(CTarvikImage, AoiCopiesTheRegionAndChecksItsBounds)
{
    Bytes storage;
    const CTarvikImage image = NumberedMono8(storage);
    const CTarvikImage region = image.GetAoi(1, 2, 3, 2);
    EXPECT_EQ(region.GetPaddingX(), 0u);
    EXPECT_EQ(Pixels(region), (Bytes{21, 22, 23, 31, 32, 33}));
    EXPECT_EQ(Pixels(image.GetAoi(0, 0, 6, 4)).size(), 24u);

    EXPECT_THROW(image.GetAoi(4, 0, 3, 1), GenICam::OutOfRangeException);
    EXPECT_THROW(image.GetAoi(0, 3, 1, 2), GenICam::OutOfRangeException);
    // Numbers that wrap in 32 bits still leave the image.
    EXPECT_THROW(image.GetAoi(0xFFFFFFFFu, 0, 2, 1), GenICam::OutOfRangeException);
    EXPECT_THROW(image.GetAoi(0, 0xFFFFFFFFu, 1, 2), GenICam::OutOfRangeException);
    EXPECT_THROW(CTarvikImage().GetAoi(0, 0, 0, 0), GenICam::InvalidArgumentException);

    // Rows of a bottom-up image count from the picture's top.
    CTarvikImage bottomUp = NumberedMono8(storage);
    bottomUp.AttachUserBuffer(storage.data(), storage.size(), PixelType_Mono8, 6, 4, 2,
                              ImageOrientation_BottomUp);
    EXPECT_EQ(Pixels(bottomUp.GetAoi(0, 0, 2, 1)), (Bytes{30, 31}));
    EXPECT_EQ(bottomUp.GetAoi(0, 0, 2, 1).GetOrientation(), ImageOrientation_BottomUp);
}

TEST(CTarvikImage, AoiOfPackedPlanarAndBayerTypes)
{
    // Mono12p samples 0xABC, 0x123, 0xFFF, 0x456: a region from column 1 starts mid-byte.
    Bytes packed = {0xBC, 0x3A, 0x12, 0xFF, 0x6F, 0x45};
    CTarvikImage mono12p;
    mono12p.AttachUserBuffer(packed.data(), packed.size(), PixelType_Mono12p, 4, 1, 0);
    EXPECT_EQ(Pixels(mono12p.GetAoi(1, 0, 2, 1)), (Bytes{0x23, 0xF1, 0xFF}));
    EXPECT_EQ(Pixels(mono12p.GetAoi(3, 0, 1, 1)), (Bytes{0x56, 0x04}));

    // Two samples in three bytes and YUV 4:2:2 keep their pixel groups together.
    Bytes grouped(6 * 2);
    CTarvikImage mono12Packed;
    mono12Packed.AttachUserBuffer(grouped.data(), grouped.size(), PixelType_Mono12Packed, 4, 2, 0);
    EXPECT_NO_THROW(mono12Packed.GetAoi(2, 1, 2, 1));
    EXPECT_THROW(mono12Packed.GetAoi(1, 0, 2, 1), GenICam::InvalidArgumentException);
    CTarvikImage yuv;
    yuv.AttachUserBuffer(grouped.data(), grouped.size(), PixelType_YUV422_8_UYVY, 3, 2, 0);
    EXPECT_THROW(yuv.GetAoi(1, 0, 2, 1), GenICam::InvalidArgumentException);

    // RGB8_Planar 2 x 2: a region cuts every plane, red 1..4, green 11..14, blue 21..24.
    Bytes planes = {1, 2, 3, 4, 11, 12, 13, 14, 21, 22, 23, 24};
    CTarvikImage planar;
    planar.AttachUserBuffer(planes.data(), planes.size(), PixelType_RGB8_Planar, 2, 2, 0);
    EXPECT_EQ(Pixels(planar.GetAoi(1, 0, 1, 2)), (Bytes{2, 4, 12, 14, 22, 24}));

    // A Bayer region takes the pattern of its own first pixel.
    Bytes raw(8 * 8);
    CTarvikImage bayer;
    bayer.AttachUserBuffer(raw.data(), raw.size(), PixelType_BayerRG12p, 4, 8, 2);
    EXPECT_EQ(bayer.GetAoi(0, 0, 2, 2).GetPixelType(), PixelType_BayerRG12p);
    EXPECT_EQ(bayer.GetAoi(1, 0, 2, 2).GetPixelType(), PixelType_BayerGR12p);
    EXPECT_EQ(bayer.GetAoi(0, 1, 2, 2).GetPixelType(), PixelType_BayerGB12p);
    EXPECT_EQ(bayer.GetAoi(1, 1, 2, 2).GetPixelType(), PixelType_BayerBG12p);
    bayer.ChangePixelType(PixelType_BayerGB12p);
    EXPECT_EQ(bayer.GetAoi(1, 1, 2, 2).GetPixelType(), PixelType_BayerGR12p);
    EXPECT_THROW(bayer.ChangePixelType(PixelType_RGB16), GenICam::InvalidArgumentException)
        << "the buffer is too small for the new type";
}

TEST(CTarvikImage, ConverterSizesTheTargetImageItself)
{
    Bytes storage;
    const CTarvikImage source = NumberedMono8(storage);
    CImageFormatConverter converter;
    converter.OutputPixelFormat = PixelType_BGRa8;
    converter.OutputPaddingX = 4;
    converter.OutputOrientation = ImageOrientation_BottomUp;
    CTarvikImage target;
    converter.Convert(target, source);
    EXPECT_EQ(target.GetPixelType(), PixelType_BGRa8);
    EXPECT_EQ(target.GetWidth(), 6u);
    EXPECT_EQ(target.GetHeight(), 4u);
    EXPECT_EQ(target.GetPaddingX(), 4u);
    EXPECT_EQ(target.GetOrientation(), ImageOrientation_BottomUp);
    const auto* first = static_cast<const uint8_t*>(target.GetBuffer());
    // The first row in memory is the picture's bottom row: pixel (0, 3) is 30.
    EXPECT_EQ((Bytes{first[0], first[1], first[2], first[3]}), (Bytes{30, 30, 30, 255}));

    // Converting an image into itself works on a copy.
    CTarvikImage self(PixelType_Mono8, 2, 1);
    static_cast<uint8_t*>(self.GetBuffer())[1] = 200;
    converter.OutputPaddingX = 0;
    converter.OutputOrientation = ImageOrientation_TopDown;
    converter.OutputPixelFormat = PixelType_RGB8;
    converter.Convert(self, self);
    EXPECT_EQ(Pixels(self), (Bytes{0, 0, 0, 200, 200, 200}));
}
