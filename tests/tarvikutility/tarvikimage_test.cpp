// CTarvikImage: owned and attached buffers, and the converter sizing a target
// image itself.
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

} // namespace

TEST(CTarvikImage, OwnedImagesAreZeroFilledAlignedAndCopiedDeeply)
{
    CTarvikImage image(PixelType_RGB8, 5, 3, 1);
    EXPECT_EQ(image.GetStride(), 16u);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(image.GetBuffer()) % 64, 0u);
    EXPECT_EQ(Pixels(image), Bytes(48, 0));

    CTarvikImage copy(image);
    static_cast<uint8_t*>(copy.GetBuffer())[0] = 9;
    EXPECT_EQ(static_cast<uint8_t*>(image.GetBuffer())[0], 0);
    const CTarvikImage moved(std::move(copy));
    EXPECT_EQ(static_cast<const uint8_t*>(moved.GetBuffer())[0], 9);
    EXPECT_FALSE(copy.IsValid()); // NOLINT(bugprone-use-after-move): a moved-from image is empty
}

TEST(CTarvikImage, AttachedBuffersAreUsedWithoutACopyAndChecked)
{
    Bytes storage(32);
    CTarvikImage image;
    // 6 x 4 pixels with 2 bytes of padding: the padding after the last row need not be there.
    image.AttachUserBuffer(storage.data(), 30, PixelType_Mono8, 6, 4, 2);
    EXPECT_EQ(CTarvikImage(image).GetBuffer(), storage.data());
    EXPECT_THROW(image.AttachUserBuffer(storage.data(), 29, PixelType_Mono8, 6, 4, 2),
                 GenICam::InvalidArgumentException);
    EXPECT_THROW(image.AttachUserBuffer(nullptr, 100, PixelType_Mono8, 6, 4, 2),
                 GenICam::InvalidArgumentException);
    EXPECT_THROW(image.AttachUserBuffer(storage.data(), 100, PixelType_Undefined, 6, 4, 2),
                 GenICam::InvalidArgumentException);
    // A refused attach leaves the image as it was.
    EXPECT_EQ(image.GetBufferSize(), 30u);
}

TEST(CTarvikImage, ConverterSizesTheTargetImageItself)
{
    // Mono8 6 x 4 whose pixel (x, y) is 10 y + x.
    Bytes storage(24);
    for (size_t i = 0; i < storage.size(); ++i)
        storage[i] = static_cast<uint8_t>(10 * (i / 6) + i % 6);
    CTarvikImage source;
    source.AttachUserBuffer(storage.data(), storage.size(), PixelType_Mono8, 6, 4, 0);
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
    // The first row in memory is the picture's bottom row: pixel (0, 3) is 30.
    const Bytes converted = Pixels(target);
    EXPECT_EQ(Bytes(converted.begin(), converted.begin() + 4), (Bytes{30, 30, 30, 255}));
    // An empty source is refused, and the target stays as it was.
    EXPECT_THROW(converter.Convert(target, CTarvikImage()), GenICam::InvalidArgumentException);
    EXPECT_THROW(converter.Convert(target, CTarvikImage(PixelType_Mono8, 0, 3)),
                 GenICam::InvalidArgumentException);
    EXPECT_EQ(target.GetPixelType(), PixelType_BGRa8);
    EXPECT_EQ(Pixels(target), converted);

    // Converting an image into itself works on a copy.
    CTarvikImage self(PixelType_Mono8, 2, 1);
    static_cast<uint8_t*>(self.GetBuffer())[1] = 200;
    converter.OutputPaddingX = 0;
    converter.OutputOrientation = ImageOrientation_TopDown;
    converter.OutputPixelFormat = PixelType_RGB8;
    converter.Convert(self, self);
    EXPECT_EQ(Pixels(self), (Bytes{0, 0, 0, 200, 200, 200}));
}
