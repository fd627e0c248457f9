// Bad input gets a GenICam exception that says why, and the target stays untouched.
// Buffers are sized exactly, so the sanitizer build sees any access beyond them.
#include "../histogram/failure_text.h"

#include <GCBase/GCException.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace Tarvik;

TEST(ImageFormatConverterErrors, BadCallsAreRefusedWithAnExceptionThatSaysWhy)
{
    struct BadCall
    {
        const char* what;
        EPixelType type;
        uint32_t width;
        uint32_t height;
        size_t paddingX;
        // The buffers: right for the layout, but one byte short where a row says so.
        size_t sourceSize;
        size_t targetSize;
        const char* messagePart;
    };
    const BadCall calls[] = {
        {"zero width", PixelType_Mono8, 0, 4, 0, 1, 1, "no width or height"},
        {"zero height", PixelType_RGB8, 4, 0, 0, 1, 1, "no width or height"},
        {"undefined type", PixelType_Undefined, 4, 4, 0, 16, 64, "cannot be converted"},
        {"unknown type", static_cast<EPixelType>(0x01080002), 4, 4, 0, 16, 64, "0x01080002"},
        {"short source", PixelType_BayerRG8, 5, 3, 0, 14, 60, "Source buffer of 14 bytes"},
        {"short packed source", PixelType_Mono12p, 5, 3, 2, 27, 60, "Source buffer of 27 bytes"},
        {"padding beyond the source", PixelType_Mono8, 4, 4, 100, 216, 64, "Source buffer of 216 bytes"},
        {"short target", PixelType_Mono8, 5, 3, 0, 15, 59, "Target buffer of 59 bytes"},
        {"empty target", PixelType_YUV422_8, 2, 2, 0, 8, 1, "Target buffer"},
        // A layout that does not fit in memory is an overflow, not a wrapped small size.
        {"overflowing padding", PixelType_Mono8, 2, 2, std::numeric_limits<size_t>::max() / 2, 16, 16,
         "overflows"},
        {"overflowing size", PixelType_Mono16, 0xFFFFFFFFu, 0xFFFFFFFFu, 0, 16, 16, "overflows"}};
    CImageFormatConverter converter;
    converter.OutputPixelFormat = PixelType_BGRa8;
    for (const BadCall& call : calls)
    {
        SCOPED_TRACE(call.what);
        std::vector<uint8_t> source(call.sourceSize, 7);
        std::vector<uint8_t> target(call.targetSize, 0xAA);
        EXPECT_THAT(failureOf(
                        [&]
                        {
                            converter.Convert(target.data(), target.size(), source.data(), source.size(),
                                              call.type, call.width, call.height, call.paddingX);
                        }),
                    testing::HasSubstr(call.messagePart));
        EXPECT_EQ(target, std::vector<uint8_t>(target.size(), 0xAA));
    }
}

TEST(ImageFormatConverterErrors, NullBuffersAndUnknownOrientationsAreRefused)
{
    CImageFormatConverter converter;
    std::vector<uint8_t> buffer(64);
    EXPECT_THROW(converter.Convert(nullptr, 64, buffer.data(), 64, PixelType_Mono8, 2, 2, 0),
                 GenICam::InvalidArgumentException);
    EXPECT_THROW(converter.Convert(buffer.data(), 64, nullptr, 64, PixelType_Mono8, 2, 2, 0),
                 GenICam::InvalidArgumentException);
    EXPECT_THROW(converter.Convert(buffer.data(), 64, buffer.data(), 64, PixelType_Mono8, 2, 2, 0,
                                   static_cast<EImageOrientation>(2)),
                 GenICam::InvalidArgumentException);
}
