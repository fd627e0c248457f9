// Known answers: colour orders, Bayer phases, packings, bit alignment and
// orientation, each with bytes written out by hand.
#include "ConversionTestSupport.h"

#include <TarvikUtility/ImageFormatConverter.h>

#include <gtest/gtest.h>

using namespace Tarvik;
using Bytes = std::vector<uint8_t>;

namespace
{

class ImageFormatConverterKnownAnswer : public ::testing::Test
{
protected:
    Bytes Convert(const Bytes& source, EPixelType type, uint32_t width, uint32_t height, EPixelType output,
                  size_t sourcePaddingX = 0)
    {
        converter.OutputPixelFormat = output;
        Bytes target(converter.GetBufferSizeForConversion(width, height));
        converter.Convert(target.data(), target.size(), source.data(), source.size(), type, width, height,
                          sourcePaddingX);
        return target;
    }

    static Bytes Words(std::initializer_list<uint16_t> words)
    {
        Bytes bytes;
        for (uint16_t word : words)
        {
            bytes.push_back(static_cast<uint8_t>(word));
            bytes.push_back(static_cast<uint8_t>(word >> 8));
        }
        return bytes;
    }

    CImageFormatConverter converter;
};

struct ColourOrderCase
{
    EPixelType type;
    Bytes pixel;
};

} // namespace

TEST_F(ImageFormatConverterKnownAnswer, ColourOrdersComeOutAsBlueGreenRedAlpha)
{
    // Each source holds red 0x10 (or its depth's equivalent), green 0x20, blue 0x30.
    const ColourOrderCase cases[] = {
        {PixelType_RGB8, {0x10, 0x20, 0x30}},
        {PixelType_BGR8, {0x30, 0x20, 0x10}},
        {PixelType_RGBa8, {0x10, 0x20, 0x30, 0x77}},
        {PixelType_BGRa8, {0x30, 0x20, 0x10, 0x77}},
        {PixelType_RGB10, Words({0x40, 0x80, 0xC0})},
        {PixelType_BGR12, Words({0x300, 0x200, 0x100})},
        {PixelType_RGB16, Words({0x1000, 0x2000, 0x3000})},
        {PixelType_BGR16, Words({0x3000, 0x2000, 0x1000})},
        // 5-bit red 2 and blue 6 read as 6-bit 4 and 12, green 8 of 6 bits: MSB-aligned gives 0x10, 0x20,
        // 0x30.
        {PixelType_RGB565p, Words({static_cast<uint16_t>(2 | (8 << 5) | (6 << 11))})},
        {PixelType_BGR565p, Words({static_cast<uint16_t>(6 | (8 << 5) | (2 << 11))})},
        {PixelType_RGB10p32, Bytes{0x40, 0x00, 0x02, 0x0C}},
        {PixelType_RGB8_Planar, {0x10, 0x20, 0x30}},
    };
    converter.OutputBitAlignment = OutputBitAlignment_MsbAligned;
    for (const ColourOrderCase& c : cases)
    {
        SCOPED_TRACE(ConversionTestSupport::NameOf(c.type));
        EXPECT_EQ(Convert(c.pixel, c.type, 1, 1, PixelType_BGRa8), (Bytes{0x30, 0x20, 0x10, 0xFF}));
        EXPECT_EQ(Convert(c.pixel, c.type, 1, 1, PixelType_RGB8), (Bytes{0x10, 0x20, 0x30}));
    }
}

TEST_F(ImageFormatConverterKnownAnswer, PureRedSceneStaysRedThroughEveryBayerPhase)
{
    // Red sites of each phase in a 2x2 cell: (x, y) of the red sample.
    const std::pair<EPixelType, std::pair<int, int>> phases[] = {
        {PixelType_BayerRG8, {0, 0}},
        {PixelType_BayerGR8, {1, 0}},
        {PixelType_BayerGB8, {0, 1}},
        {PixelType_BayerBG8, {1, 1}},
    };
    converter.InconvertibleEdgeHandling = InconvertibleEdgeHandling_Extrapolate;
    for (const auto& [type, red] : phases)
    {
        SCOPED_TRACE(ConversionTestSupport::NameOf(type));
        for (const uint32_t width : {6u, 7u, 70u})
        {
            const uint32_t height = 5;
            Bytes scene(size_t{width} * height, 0);
            for (uint32_t y = 0; y < height; ++y)
                for (uint32_t x = 0; x < width; ++x)
                    if (static_cast<int>(x % 2) == red.first && static_cast<int>(y % 2) == red.second)
                        scene[y * width + x] = 200;
            const Bytes bgra = Convert(scene, type, width, height, PixelType_BGRa8);
            for (size_t pixel = 0; pixel < size_t{width} * height; ++pixel)
            {
                ASSERT_EQ(
                    (Bytes{bgra[4 * pixel], bgra[4 * pixel + 1], bgra[4 * pixel + 2], bgra[4 * pixel + 3]}),
                    (Bytes{0, 0, 200, 255}))
                    << "pixel " << pixel << " of width " << width;
            }
        }
    }
}

TEST_F(ImageFormatConverterKnownAnswer, BayerGreenAndBlueSitesInterpolateTheirNeighbours)
{
    // BayerRG8, 4x4: R G R G / G B G B / ...; R sites 100, G sites 50, B sites 10, one R site 180.
    Bytes raw = {100, 50, 100, 50, 50, 10, 50, 10, 180, 50, 100, 50, 50, 10, 50, 10};
    converter.InconvertibleEdgeHandling = InconvertibleEdgeHandling_Extrapolate;
    const Bytes rgb = Convert(raw, PixelType_BayerRG8, 4, 4, PixelType_RGB8);
    const auto at = [&](int x, int y)
    { return Bytes(rgb.begin() + 3 * (4 * y + x), rgb.begin() + 3 * (4 * y + x) + 3); };
    // B site (1,1): red from the diagonals 100, 100, 180, 100 -> (480 + 2) / 4 = 120.
    EXPECT_EQ(at(1, 1), (Bytes{120, 50, 10}));
    // G site (0,1) on a blue row: red above and below (100, 180) -> 140; blue left (mirrored) and right: 10.
    EXPECT_EQ(at(0, 1), (Bytes{140, 50, 10}));
    // R site (2,2): green from the cross, blue from the diagonals.
    EXPECT_EQ(at(2, 2), (Bytes{100, 50, 10}));

    converter.InconvertibleEdgeHandling = InconvertibleEdgeHandling_SetZero;
    const Bytes framed = Convert(raw, PixelType_BayerRG8, 4, 4, PixelType_RGB8);
    EXPECT_EQ(Bytes(framed.begin(), framed.begin() + 12), Bytes(12, 0));
    EXPECT_EQ(Bytes(framed.begin() + 12, framed.begin() + 15), Bytes(3, 0));
    EXPECT_EQ(Bytes(framed.begin() + 15, framed.begin() + 18), (Bytes{120, 50, 10}));
}

TEST_F(ImageFormatConverterKnownAnswer, PackedMonoFormatsUnpackToTheirValues)
{
    struct PackedCase
    {
        EPixelType type;
        uint32_t width;
        Bytes packed;
        std::vector<uint16_t> values;
    };
    const PackedCase cases[] = {
        {PixelType_Mono12p, 2, {0xBC, 0x3A, 0x12}, {0xABC, 0x123}},
        {PixelType_Mono12Packed, 2, {0xAB, 0x3C, 0x12}, {0xABC, 0x123}},
        {PixelType_Mono10Packed, 2, {0xFF, 0x21, 0x55}, {0x3FD, 0x156}},
        {PixelType_Mono10p, 4, {0xFF, 0x03, 0x50, 0x95, 0xAA}, {0x3FF, 0x000, 0x155, 0x2AA}},
        {PixelType_Mono12p, 3, {0xBC, 0x3A, 0x12, 0xFF, 0x0F}, {0xABC, 0x123, 0xFFF}},
        {PixelType_Mono4p, 3, {0x5A, 0x0F}, {0xA, 0x5, 0xF}},
        {PixelType_Mono2p, 5, {0xE4, 0x03}, {0, 1, 2, 3, 3}},
        {PixelType_Mono1p, 9, {0x05, 0x01}, {1, 0, 1, 0, 0, 0, 0, 0, 1}},
        {PixelType_Mono12, 2, Words({0x0ABC, 5000}), {0xABC, 0xFFF}},
    };
    for (const PackedCase& c : cases)
    {
        SCOPED_TRACE(ConversionTestSupport::NameOf(c.type));
        converter.OutputBitAlignment = OutputBitAlignment_LsbAligned;
        Bytes expected;
        for (uint16_t value : c.values)
        {
            expected.push_back(static_cast<uint8_t>(value));
            expected.push_back(static_cast<uint8_t>(value >> 8));
        }
        EXPECT_EQ(Convert(c.packed, c.type, c.width, 1, PixelType_Mono16), expected);
    }
}

TEST_F(ImageFormatConverterKnownAnswer, BitAlignmentPlacesShallowSamplesAndDeepOnesKeepTheirTop)
{
    converter.OutputBitAlignment = OutputBitAlignment_LsbAligned;
    EXPECT_EQ(Convert(Words({0x3FF}), PixelType_Mono10, 1, 1, PixelType_Mono16), Words({0x03FF}));
    EXPECT_EQ(Convert({0x0A}, PixelType_Mono4p, 1, 1, PixelType_Mono8), Bytes{0x0A});
    EXPECT_EQ(Convert({0xAB, 0, 0}, PixelType_RGB8, 1, 1, PixelType_RGB16), Words({0xAB, 0, 0}));
    converter.OutputBitAlignment = OutputBitAlignment_MsbAligned;
    EXPECT_EQ(Convert(Words({0x3FF}), PixelType_Mono10, 1, 1, PixelType_Mono16), Words({0xFFC0}));
    EXPECT_EQ(Convert({0x0A}, PixelType_Mono4p, 1, 1, PixelType_Mono8), Bytes{0xA0});
    EXPECT_EQ(Convert({0xAB, 0, 0}, PixelType_RGB8, 1, 1, PixelType_RGB16), Words({0xAB00, 0, 0}));
    // Deeper sources keep their most significant bits whatever the alignment.
    EXPECT_EQ(Convert(Words({0xABC}), PixelType_Mono12, 1, 1, PixelType_Mono8), Bytes{0xAB});
    EXPECT_EQ(Convert(Words({0xABCD}), PixelType_Mono16, 1, 1, PixelType_BGRa8),
              (Bytes{0xAB, 0xAB, 0xAB, 0xFF}));
}

TEST_F(ImageFormatConverterKnownAnswer, YuvAndLuminance)
{
    // Full-range BT.601: Y 76, U 85, V 255 is red; Y 128 with neutral chroma is grey.
    EXPECT_EQ(Convert({85, 76, 255, 76}, PixelType_YUV422_8_UYVY, 2, 1, PixelType_RGB8),
              (Bytes{254, 0, 0, 254, 0, 0}));
    EXPECT_EQ(Convert({76, 85, 76, 255}, PixelType_YUV422_8, 2, 1, PixelType_RGB8),
              (Bytes{254, 0, 0, 254, 0, 0}));
    EXPECT_EQ(Convert({128, 128, 128}, PixelType_YUV8_UYV, 1, 1, PixelType_BGRa8),
              (Bytes{128, 128, 128, 255}));
    // YUV 4:1:1, U Y0 Y1 V Y2 Y3; to mono it gives Y itself.
    EXPECT_EQ(Convert({128, 10, 20, 128, 30, 40}, PixelType_YUV411_8_UYYVYY, 4, 1, PixelType_Mono8),
              (Bytes{10, 20, 30, 40}));
    // Colour to mono is the luminance of the output channels.
    EXPECT_EQ(Convert({255, 0, 0, 0, 255, 0, 0, 0, 255}, PixelType_RGB8, 3, 1, PixelType_Mono8),
              (Bytes{77, 149, 29}));
}

TEST_F(ImageFormatConverterKnownAnswer, OrientationAndPaddingPlaceTheRows)
{
    const Bytes source = {1, 2, 0xEE, 3, 4};
    converter.OutputPaddingX = 1;
    converter.OutputOrientation = ImageOrientation_BottomUp;
    converter.OutputPixelFormat = PixelType_Mono8;
    Bytes target(6, 0x55);
    converter.Convert(target.data(), target.size(), source.data(), source.size(), PixelType_Mono8, 2, 2, 1);
    // Rows swapped, the padding bytes untouched.
    EXPECT_EQ(target, (Bytes{3, 4, 0x55, 1, 2, 0x55}));
    // A bottom-up source into a bottom-up output keeps the memory order.
    converter.Convert(target.data(), target.size(), source.data(), source.size(), PixelType_Mono8, 2, 2, 1,
                      ImageOrientation_BottomUp);
    EXPECT_EQ(target, (Bytes{1, 2, 0x55, 3, 4, 0x55}));
}
