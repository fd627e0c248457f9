// Reads one source row into plain 16-bit samples: one per pixel for mono,
// Bayer and the Y of YUV; red, green, blue per pixel for colour and YUV.
#pragma once

#include "ImageLayout.h"

#include <cstdint>

namespace Tarvik::Conversion
{

// Mono and Bayer types, and YUV (its Y). `out` holds width samples of the
// format's depth, clamped to its maximum.
void UnpackMonoRow(const SourceImage& source, uint32_t y, uint16_t* out);

// `count` samples of a packed mono or Bayer row (a bit stream or pairs in three
// bytes) from its start, which must be the start of a group of samples.
void UnpackPackedSamples(const uint8_t* row, uint32_t count, const SourceFormat& format, uint16_t* out);

// Colour and YUV types. `out` holds 3 * width samples, red, green, blue, of the
// depth ColorRowDepth gives.
void UnpackColorRow(const SourceImage& source, uint32_t y, uint16_t* out);

// Y of pixel x of a YUV row and the chroma pair of the group it belongs to; 128
// for a chroma sample beyond the row end.
struct YuvSample
{
    uint8_t y;
    uint8_t u;
    uint8_t v;
};

YuvSample YuvSampleAt(const uint8_t* row, uint32_t width, YuvLayout layout, uint32_t x);

// Depth of the samples UnpackColorRow gives for this format.
uint32_t ColorRowDepth(const SourceFormat& format);

} // namespace Tarvik::Conversion
