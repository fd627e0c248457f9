// The settings of an image format conversion and their values.
#pragma once

#include <TarvikBase/PixelType.h>
#include <TarvikUtility/ImageOrientation.h>

#include <cstdint>

namespace Tarvik
{

// Where samples of a smaller depth go in a wider output sample. A sample of a
// greater depth always keeps its most significant bits.
enum EOutputBitAlignment : uint32_t
{
    // A 12-bit sample in a 16-bit word keeps its value 0 to 4095.
    OutputBitAlignment_LsbAligned = 0,
    // A 12-bit sample in a 16-bit word is shifted up by 4 bits.
    OutputBitAlignment_MsbAligned = 1,
};

// What becomes of the pixels on the one-pixel frame of a Bayer image, whose
// neighbourhood leaves the image.
enum EInconvertibleEdgeHandling : uint32_t
{
    // The frame is written black (alpha stays opaque).
    InconvertibleEdgeHandling_SetZero = 0,
    // The frame is demosaiced from the neighbourhood mirrored at the border.
    InconvertibleEdgeHandling_Extrapolate = 1,
};

// One snapshot of every setting; a conversion runs with one snapshot throughout.
struct ImageFormatConverterSettings
{
    EPixelType outputPixelFormat = PixelType_BGRa8;
    uint32_t outputPaddingX = 0;
    EImageOrientation outputOrientation = ImageOrientation_TopDown;
    EOutputBitAlignment outputBitAlignment = OutputBitAlignment_LsbAligned;
    EInconvertibleEdgeHandling inconvertibleEdgeHandling = InconvertibleEdgeHandling_SetZero;
    // Threads one conversion may use, the caller's included.
    uint32_t maxNumThreads = 1;
};

} // namespace Tarvik
