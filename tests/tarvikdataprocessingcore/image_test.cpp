#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

using namespace Tarvik::DataProcessing;
using Core::Image;

namespace
{

const auto provider = std::make_shared<Core::AlignedBufferProvider>();

const uint8_t* bytesOf(const Core::IImage& image)
{
    return static_cast<const uint8_t*>(image.getImageData().data);
}

} // namespace

TEST(Image, AdoptsABufferWithoutCopying)
{
    const auto buffer = provider->allocate(3 * 2 + 2 * 2);
    const Image image(Tarvik::PixelType_Mono8, 3, 2, 2, buffer, nullptr);
    EXPECT_EQ(image.getImageData().data, buffer->getData());
    EXPECT_EQ(image.getImageData().paddingX, 2u);
    EXPECT_EQ(image.getImageSize(), 10u);
    EXPECT_FALSE(image.hasError(true));
    EXPECT_THROW(Image(Tarvik::PixelType_Mono8, 4, 2, 2, buffer, nullptr), GenICam::InvalidArgumentException);
    EXPECT_THROW(Image(Tarvik::PixelType_Undefined, 1, 1, 0, buffer, nullptr),
                 GenICam::InvalidArgumentException);
}

TEST(Image, CopyingConstructorNeverReadsPastTheGivenPayload)
{
    std::vector<uint8_t> payload(5);
    std::iota(payload.begin(), payload.end(), 1);
    const Image image(payload.data(), payload.size(), Tarvik::PixelType_Mono8, 4, 2, 0, 0, provider, nullptr);
    const std::vector<uint8_t> pixels(bytesOf(image), bytesOf(image) + image.getImageSize());
    EXPECT_EQ(pixels, (std::vector<uint8_t>{1, 2, 3, 4, 5, 0, 0, 0}));
}

TEST(Image, CopyingConstructorRepadsRows)
{
    const std::vector<uint8_t> payload = {1, 2, 9, 3, 4, 9};
    const Image image(payload.data(), payload.size(), Tarvik::PixelType_Mono8, 2, 2, 1, 2, provider, nullptr);
    const std::vector<uint8_t> pixels(bytesOf(image), bytesOf(image) + image.getImageSize());
    EXPECT_EQ(pixels, (std::vector<uint8_t>{1, 2, 0, 0, 3, 4, 0, 0}));
}

TEST(Image, CopyHasPixelsAndLockOfItsOwn)
{
    Image source(Tarvik::PixelType_Mono8, 2, 1, 0, provider, nullptr);
    static_cast<uint8_t*>(source.getImageData().data)[0] = 7;
    Image copy(source, nullptr);
    EXPECT_NE(copy.getImageData().data, source.getImageData().data);
    EXPECT_EQ(bytesOf(copy)[0], 7);
    static_cast<uint8_t*>(copy.getImageData().data)[0] = 8;
    EXPECT_EQ(bytesOf(source)[0], 7);
}

TEST(Image, ErrorStateHasNoPixels)
{
    auto error = std::make_shared<Core::InvalidValueError>("no frame", Utils::DateTime::now());
    const Core::TarvikImage failed(error, nullptr);
    EXPECT_TRUE(failed.hasError(false));
    EXPECT_EQ(failed.getError(false), error);
    EXPECT_EQ(failed.getImageData().data, nullptr);
    EXPECT_EQ(failed.getImageSize(), 0u);
    EXPECT_EQ(failed.getPixelType(), Tarvik::PixelType_Undefined);
    EXPECT_EQ(Core::TarvikImage(failed, nullptr).getError(false), error);
}
