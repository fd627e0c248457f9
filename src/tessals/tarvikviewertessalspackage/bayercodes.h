// The Bayer pixel types: monochrome by their family bit, colour by their content.
#pragma once

#include <TarvikBase/PixelType.h>

namespace TarvikViewerTessalPackage::Detail
{

// True for the 28 Bayer codes of 8, 10, 12 and 16 bits, unpacked and packed.
bool isBayerPixelType(Tarvik::EPixelType type) noexcept;

} // namespace TarvikViewerTessalPackage::Detail
