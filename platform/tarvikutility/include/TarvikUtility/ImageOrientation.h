// Row order of an image in memory.
#pragma once

#include <cstdint>

namespace Tarvik
{

enum EImageOrientation : uint32_t
{
    // The first row in memory is the top row of the image.
    ImageOrientation_TopDown = 0,
    // The first row in memory is the bottom row of the image.
    ImageOrientation_BottomUp = 1,
};

} // namespace Tarvik
