// Converts images of every pixel type of the TarvikBase table into Mono8, Mono16,
// RGB8, RGB16 or BGRa8.
//
// What the conversion does, for every pair of formats:
// - Depth: a source sample of greater depth than the output keeps its most
//   significant bits; one of smaller depth is placed by OutputBitAlignment.
//   Samples in 16-bit words above their format's maximum are clamped to it.
// - Mono to colour repeats the grey value; colour to mono takes the luminance
//   (77 R + 150 G + 29 B + 128) / 256 of the output-depth channels; YUV to mono
//   takes Y.
// - YUV is full-range BT.601: R = Y + 1.402 (V - 128), G = Y - 0.344 (U - 128)
//   - 0.714 (V - 128), B = Y + 1.772 (U - 128), in 8-bit fixed point, clamped.
//   A pixel whose chroma sample lies beyond an odd row end takes 128 for it.
// - Bayer images are demosaiced bilinearly: a missing colour is the rounded mean
//   of its two or four nearest samples, with the neighbourhood mirrored at the
//   border (InconvertibleEdgeHandling Extrapolate) or the one-pixel frame written
//   black (SetZero). In images one pixel wide or high a colour with no sample in
//   reach takes the green value of its pixel (its own sample if green has none).
// - RGB565 channels are read as 6-bit values, the 5-bit ones shifted up by one.
// - BGRa8 output has alpha 255; source alpha is dropped.
// - Orientation: a source row order that differs from OutputOrientation is
//   reversed; Bayer patterns are read in memory order.
//
// Sizes: a buffer must hold every row with its padding except the padding after
// the last row. Padding bytes of the target are left as they are.
//
// Speed: MaxNumThreads splits the rows into bands of at least 64 rows on that
// many threads; 1, the default, keeps a conversion on the caller's thread, as a
// node that runs once per frame wants. Frames whose source and target together
// exceed 24 MiB are written past the cache.
//
// Not thread-safe for conversions: one conversion at a time per converter. The
// settings are guarded by a lock of their own, so the node map may be written
// from another thread; a conversion uses the settings it found at its start.
// GetNodeMap may be called from several threads.
#pragma once

#include <TarvikBase/PixelType.h>
#include <TarvikUtility/ConverterParameter.h>
#include <TarvikUtility/ImageFormatConverterSettings.h>
#include <TarvikUtility/ImageOrientation.h>
#include <TarvikUtility/TarvikImage.h>
#include <TarvikUtility/TarvikUtilityExport.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace GenApi
{
class INodeMap;
}

namespace Tarvik
{

class TARVIKUTILITY_API CImageFormatConverter
{
public:
    CImageFormatConverter();
    ~CImageFormatConverter();
    CImageFormatConverter(const CImageFormatConverter&) = delete;
    CImageFormatConverter& operator=(const CImageFormatConverter&) = delete;

    // Mono8, Mono16, RGB8, RGB16 or BGRa8; default BGRa8.
    CEnumConverterParameter<EPixelType> OutputPixelFormat;
    // Bytes after each output row, 0 to 65535; default 0.
    CIntegerConverterParameter OutputPaddingX;
    // Row order of the output; default top-down.
    CEnumConverterParameter<EImageOrientation> OutputOrientation;
    // Default LsbAligned.
    CEnumConverterParameter<EOutputBitAlignment> OutputBitAlignment;
    // Default SetZero.
    CEnumConverterParameter<EInconvertibleEdgeHandling> InconvertibleEdgeHandling;
    // Threads one conversion may use, 1 to 64; default 1.
    CIntegerConverterParameter MaxNumThreads;

    // Converts `width` x `height` pixels of `sourceType` at `source` into `target`
    // in the output format. Raises InvalidArgumentException for null buffers, zero
    // dimensions, an unknown source type, an unsupported output format, a target
    // or source smaller than the layout needs, and OutOfRangeException for a
    // layout whose size does not fit in memory. On a failure the target is not
    // written.
    void Convert(void* target, size_t targetSize, const void* source, size_t sourceSize,
                 EPixelType sourceType, uint32_t width, uint32_t height, size_t sourcePaddingX,
                 EImageOrientation sourceOrientation = ImageOrientation_TopDown);

    // Converts `source` into `target`, which gets a buffer of its own in the
    // output format, padding and orientation. A target that already owns a
    // buffer of that layout, apart from the source's, is written in place.
    void Convert(CTarvikImage& target, const CTarvikImage& source);

    // Bytes a target of the current output format and padding needs.
    size_t GetBufferSizeForConversion(uint32_t width, uint32_t height) const;

    // The node map of the settings, with the features OutputPixelFormat,
    // OutputPaddingX, OutputOrientation, OutputBitAlignment,
    // InconvertibleEdgeHandling and MaxNumThreads under "Root". Built from the
    // converter's own register description on first use; it reads and writes the
    // same settings as the typed members, so a write through it changes the next
    // conversion. Valid as long as the converter lives; guarded by a lock of its own.
    GenApi::INodeMap* GetNodeMap();

private:
    friend class CConverterParameter;
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace Tarvik
