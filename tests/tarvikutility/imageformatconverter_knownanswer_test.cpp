// Known answers, with bytes written out by hand: they check the reference
// converter and the library against the formats' definitions, not against each
// other. Colour orders, Bayer interpolation, packings, bit alignment, YUV and
// luminance.
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
    Bytes Convert(const Bytes& source, EPixelType type, uint32_t width, uint32_t height, EPixelType output)
    {
        converter.OutputPixelFormat = output;
        return ConversionTestSupport::Converted(converter, source, type, width, height);
    }

    CImageFormatConverter converter;
};

Bytes Words(std::initializer_list<uint16_t> words)
{
    Bytes bytes;
    for (uint16_t word : words)
        bytes.insert(bytes.end(), {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8)});
    return bytes;
}

} // namespace

TEST_F(ImageFormatConverterKnownAnswer, ColourOrdersComeOutAsBlueGreenRedAlpha)
{
    // Each source holds red 0x10 (or its depth's equivalent), green 0x20, blue 0x30.
    // One source of each layout and sample order; the others of a layout differ only in depth
    // or order, which the reference comparison covers.
    const std::pair<EPixelType, Bytes> cases[] = {
        {PixelType_RGB8, {0x10, 0x20, 0x30}},
        {PixelType_BGRa8, {0x30, 0x20, 0x10, 0x77}},
        {PixelType_BGR12, Words({0x300, 0x200, 0x100})},
        // 5-bit red 2 and blue 6 read as 6-bit 4 and 12, green 8 of 6 bits: MSB-aligned gives
        // 0x10, 0x20, 0x30.
        {PixelType_RGB565p, Words({static_cast<uint16_t>(2 | (8 << 5) | (6 << 11))})},
        {PixelType_RGB10p32, Bytes{0x40, 0x00, 0x02, 0x0C}},
        {PixelType_RGB8_Planar, {0x10, 0x20, 0x30}},
    };
    converter.OutputBitAlignment = OutputBitAlignment_MsbAligned;
    for (const auto& [type, pixel] : cases)
    {
        SCOPED_TRACE(ConversionTestSupport::NameOf(type));
        EXPECT_EQ(Convert(pixel, type, 1, 1, PixelType_BGRa8), (Bytes{0x30, 0x20, 0x10, 0xFF}));
        EXPECT_EQ(Convert(pixel, type, 1, 1, PixelType_RGB8), (Bytes{0x10, 0x20, 0x30}));
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
    // G site (0,1) on a blue row: red above and below (100, 180) -> 140; blue left (mirrored) and
    // right: 10.
    EXPECT_EQ(at(0, 1), (Bytes{140, 50, 10}));
    // R site (2,2): green from the cross, blue from the diagonals.
    EXPECT_EQ(at(2, 2), (Bytes{100, 50, 10}));

    converter.InconvertibleEdgeHandling = InconvertibleEdgeHandling_SetZero;
    const Bytes framed = Convert(raw, PixelType_BayerRG8, 4, 4, PixelType_RGB8);
    EXPECT_EQ(Bytes(framed.begin(), framed.begin() + 15), Bytes(15, 0)) << "the first row and column";
    EXPECT_EQ(Bytes(framed.begin() + 15, framed.begin() + 18), (Bytes{120, 50, 10}));
}

TEST_F(ImageFormatConverterKnownAnswer, PackingsBitAlignmentAndYuv)
{
    struct KnownAnswer
    {
        EPixelType type;
        Bytes source;
        EPixelType output;
        Bytes expected;
        bool msbAligned = false;
    };
    const KnownAnswer cases[] = {
        {PixelType_Mono12Packed, {0xAB, 0x3C, 0x12}, PixelType_Mono16, Words({0xABC, 0x123})},
        {PixelType_Mono10Packed, {0xFF, 0x21, 0x55}, PixelType_Mono16, Words({0x3FD, 0x156})},
        {PixelType_Mono12p, {0xBC, 0x3A, 0x12, 0xFF, 0x0F}, PixelType_Mono16, Words({0xABC, 0x123, 0xFFF})},
        {PixelType_Mono4p, {0x5A, 0x0F}, PixelType_Mono16, Words({0xA, 0x5, 0xF})},
        {PixelType_Mono1p, {0x05, 0x01}, PixelType_Mono16, Words({1, 0, 1, 0, 0, 0, 0, 0, 1})},
        // Bits above the depth are dropped.
        {PixelType_Mono12, Words({0x0ABC, 5000}), PixelType_Mono16, Words({0xABC, 0xFFF})},
        // Shallower samples go to the bottom or the top of the output sample.
        {PixelType_Mono10, Words({0x3FF}), PixelType_Mono16, Words({0x03FF})},
        {PixelType_RGB8, {0xAB, 0, 0}, PixelType_RGB16, Words({0xAB, 0, 0})},
        {PixelType_Mono10, Words({0x3FF}), PixelType_Mono16, Words({0xFFC0}), true},
        {PixelType_RGB8, {0xAB, 0, 0}, PixelType_RGB16, Words({0xAB00, 0, 0}), true},
        // Deeper sources keep their most significant bits whatever the alignment.
        {PixelType_Mono12, Words({0xABC}), PixelType_Mono8, {0xAB}},
        {PixelType_Mono16, Words({0xABCD}), PixelType_BGRa8, {0xAB, 0xAB, 0xAB, 0xFF}},
        // Full-range BT.601: Y 76, U 85, V 255 is red; Y 128 with neutral chroma is grey.
        {PixelType_YUV422_8_UYVY, {85, 76, 255, 76}, PixelType_RGB8, {254, 0, 0, 254, 0, 0}},
        {PixelType_YUV422_8, {76, 85, 76, 255}, PixelType_RGB8, {254, 0, 0, 254, 0, 0}},
        {PixelType_YUV8_UYV, {128, 128, 128}, PixelType_BGRa8, {128, 128, 128, 255}},
        // YUV 4:1:1, U Y0 Y1 V Y2 Y3; to mono it gives Y itself.
        {PixelType_YUV411_8_UYYVYY, {128, 10, 20, 128, 30, 40}, PixelType_Mono8, {10, 20, 30, 40}},
        // Colour to mono is the luminance of the output channels.
        {PixelType_RGB8, {255, 0, 0, 0, 255, 0, 0, 0, 255}, PixelType_Mono8, {77, 149, 29}},
    };
    for (const KnownAnswer& c : cases)
    {
        SCOPED_TRACE(ConversionTestSupport::NameOf(c.type) + " -> " +
                     ConversionTestSupport::NameOf(c.output));
        converter.OutputBitAlignment =
            c.msbAligned ? OutputBitAlignment_MsbAligned : OutputBitAlignment_LsbAligned;
        // One row, as wide as the expected output says.
        const auto width = static_cast<uint32_t>(c.expected.size() * 8 / BitPerPixel(c.output));
        EXPECT_EQ(Convert(c.source, c.type, width, 1, c.output), c.expected);
    }
}
