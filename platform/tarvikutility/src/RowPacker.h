// Writes one row of plain 16-bit samples in the output format.
#pragma once

#include "ImageLayout.h"

#include <cstdint>

namespace Tarvik::Conversion
{

// `mono` holds width samples of depth `depth`.
void PackMonoRow(const uint16_t* mono, uint32_t depth, uint32_t width, TargetKind target, bool msbAligned,
                 uint8_t* out);

// `rgb` holds width red, green, blue triples of depth `depth`.
void PackRgbRow(const uint16_t* rgb, uint32_t depth, uint32_t width, TargetKind target, bool msbAligned,
                uint8_t* out);

// Writes `count` black pixels from column `x` on; BGRa8 keeps alpha 255.
void ClearPixels(TargetKind target, uint8_t* row, uint32_t x, uint32_t count);

} // namespace Tarvik::Conversion
