// Vector row kernels for the conversions viewers run on every frame. The
// instruction set is chosen at run time, down to plain SSE2 and a scalar
// fallback, so the library runs on any x86-64 CPU. Each kernel gives exactly the
// numbers of the generic row path; it touches only the width pixels of its rows.
// Kernels with a `stream` flag then write with non-temporal stores where the row
// alignment allows, for frames too large to stay in the cache anyway; the caller
// ends its rows with hwy::FlushStream.
#pragma once

#include "SourceFormat.h"

#include <cstdint>

namespace Tarvik::Conversion
{

void Mono8RowToBgra8(const uint8_t* source, uint8_t* target, uint32_t width);

// Words of `depth` significant bits, clamped to their maximum, to their top 8 bits.
void Mono16RowToMono8(const uint8_t* source, uint8_t* target, uint32_t width, uint32_t depth, bool stream);

void Rgb8RowToBgra8(const uint8_t* source, uint8_t* target, uint32_t width, bool blueFirst, bool stream);

void Rgba8RowToBgra8(const uint8_t* source, uint8_t* target, uint32_t width, bool blueFirst);

// `uyvy` true for U Y V Y order, false for Y U Y V.
void Yuv422RowToBgra8(const uint8_t* source, uint8_t* target, uint32_t width, bool uyvy);

// One row of an 8-bit Bayer image at least two pixels wide, with its neighbour
// rows above and below (mirrored at the image border by the caller).
void Bayer8RowToBgra8(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* target,
                      uint32_t width, BayerRowKind kind, bool stream);

// The same for rows of unpacked samples of 9 to 16 bits, to their top 8 bits.
void Bayer16RowToBgra8(const uint16_t* above, const uint16_t* row, const uint16_t* below, uint8_t* target,
                       uint32_t width, BayerRowKind kind, uint32_t depth, bool stream);

} // namespace Tarvik::Conversion
