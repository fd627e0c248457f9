// Pixel type codes of the GenICam pixel format naming convention, and their arithmetic.
//
// A code is 32 bits: bit 24 marks the monochrome family (Bayer included), bit 25
// the colour family, bits 16 to 23 hold the bits per pixel. The three sub-byte
// mono formats have bit 31 set. 0xFFFFFFFF is the undefined type.
//
// Memory layout chosen here for every type: each row starts on a byte boundary;
// a row holds ceil(width * bits per pixel / 8) bytes followed by paddingX bytes.
// Planar types store their three planes one after the other, each plane with
// the row layout of one channel (width samples plus paddingX bytes per row).
// 16-bit samples are little-endian words.
#pragma once

#include <TarvikBase/TarvikBaseExport.h>

#include <cstddef>
#include <cstdint>

namespace Tarvik
{

enum EPixelType : uint32_t
{
    PixelType_Undefined = 0xFFFFFFFFu,

    PixelType_Mono1p = 0x8101000Cu,
    PixelType_Mono2p = 0x8102000Du,
    PixelType_Mono4p = 0x8104000Eu,
    PixelType_Mono8 = 0x01080001u,
    PixelType_Mono10 = 0x01100003u,
    PixelType_Mono10Packed = 0x010C0004u,
    PixelType_Mono12 = 0x01100005u,
    PixelType_Mono12Packed = 0x010C0006u,
    PixelType_Mono16 = 0x01100007u,
    PixelType_Mono14 = 0x01100025u,
    PixelType_Mono10p = 0x010A0046u,
    PixelType_Mono12p = 0x010C0047u,

    PixelType_BayerGR8 = 0x01080008u,
    PixelType_BayerRG8 = 0x01080009u,
    PixelType_BayerGB8 = 0x0108000Au,
    PixelType_BayerBG8 = 0x0108000Bu,
    PixelType_BayerGR10 = 0x0110000Cu,
    PixelType_BayerRG10 = 0x0110000Du,
    PixelType_BayerGB10 = 0x0110000Eu,
    PixelType_BayerBG10 = 0x0110000Fu,
    PixelType_BayerGR12 = 0x01100010u,
    PixelType_BayerRG12 = 0x01100011u,
    PixelType_BayerGB12 = 0x01100012u,
    PixelType_BayerBG12 = 0x01100013u,
    PixelType_BayerGR12Packed = 0x010C002Au,
    PixelType_BayerRG12Packed = 0x010C002Bu,
    PixelType_BayerGB12Packed = 0x010C002Cu,
    PixelType_BayerBG12Packed = 0x010C002Du,
    PixelType_BayerGR16 = 0x0110002Eu,
    PixelType_BayerRG16 = 0x0110002Fu,
    PixelType_BayerGB16 = 0x01100030u,
    PixelType_BayerBG16 = 0x01100031u,
    PixelType_BayerBG10p = 0x010A0052u,
    PixelType_BayerGB10p = 0x010A0054u,
    PixelType_BayerGR10p = 0x010A0056u,
    PixelType_BayerRG10p = 0x010A0058u,
    PixelType_BayerBG12p = 0x010C0053u,
    PixelType_BayerGB12p = 0x010C0055u,
    PixelType_BayerGR12p = 0x010C0057u,
    PixelType_BayerRG12p = 0x010C0059u,

    PixelType_RGB8 = 0x02180014u,
    PixelType_BGR8 = 0x02180015u,
    PixelType_RGBa8 = 0x02200016u,
    PixelType_BGRa8 = 0x02200017u,
    PixelType_RGB10 = 0x02300018u,
    PixelType_BGR10 = 0x02300019u,
    PixelType_RGB12 = 0x0230001Au,
    PixelType_BGR12 = 0x0230001Bu,
    PixelType_RGB16 = 0x02300033u,
    PixelType_BGR16 = 0x0230004Bu,
    PixelType_RGB10p32 = 0x0220001Du,
    PixelType_RGB565p = 0x02100035u,
    PixelType_BGR565p = 0x02100036u,
    PixelType_BGR10p = 0x021E0048u,
    PixelType_BGR12p = 0x02240049u,
    PixelType_RGB10p = 0x021E005Cu,
    PixelType_RGB12p = 0x0224005Du,
    PixelType_RGB8_Planar = 0x02180021u,
    PixelType_RGB10_Planar = 0x02300022u,
    PixelType_RGB12_Planar = 0x02300023u,
    PixelType_RGB16_Planar = 0x02300024u,

    PixelType_YUV411_8_UYYVYY = 0x020C001Eu,
    PixelType_YUV422_8_UYVY = 0x0210001Fu,
    PixelType_YUV8_UYV = 0x02180020u,
    PixelType_YUV422_8 = 0x02100032u,
};

// Bits of one pixel, all channels and packing included; 0 for a type not in the table.
TARVIKBASE_API uint32_t BitPerPixel(EPixelType type);

// Significant bits of one channel; 0 for a type not in the table.
TARVIKBASE_API uint32_t BitDepth(EPixelType type);

// True for a type of the table.
TARVIKBASE_API bool IsKnownPixelType(EPixelType type);

// Row stride in bytes: the bytes of `width` pixels plus `paddingX`. Returns false,
// leaving `stride` alone, for a type not in the table. A stride that does not fit
// in size_t raises GenICam::OutOfRangeException.
TARVIKBASE_API bool ComputeStride(size_t& stride, EPixelType type, uint32_t width, size_t paddingX);

// The padding that makes rows of `width` pixels `stride` bytes long. A stride
// shorter than the pixels of a row, or an unknown type, raises
// GenICam::InvalidArgumentException.
TARVIKBASE_API size_t ComputePaddingX(size_t stride, EPixelType type, uint32_t width);

// Bytes of a whole image (all planes, every row with its padding). An unknown type
// raises GenICam::InvalidArgumentException; a size that does not fit in size_t
// raises GenICam::OutOfRangeException instead of wrapping.
TARVIKBASE_API size_t ComputeBufferSize(EPixelType type, uint32_t width, uint32_t height, size_t paddingX);

} // namespace Tarvik
