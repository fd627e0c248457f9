// A deliberately plain, pixel-by-pixel converter: the oracle the library's
// conversion paths are tested against. It reads every format from its own
// description of the memory layout and knows nothing of the library's internals.
#pragma once

#include <TarvikBase/PixelType.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ReferenceConversion
{

struct Options
{
    Tarvik::EPixelType output = Tarvik::PixelType_BGRa8;
    size_t outputPaddingX = 0;
    bool msbAligned = false;
    bool extrapolateEdges = false;
    bool reverseRows = false;
    // Value of the padding bytes of the result, which a conversion leaves alone.
    uint8_t paddingFill = 0xCD;
};

// The converted image with every row's padding; `source` holds the rows of the
// source with `paddingX` bytes after each.
std::vector<uint8_t> Convert(const std::vector<uint8_t>& source, Tarvik::EPixelType type, uint32_t width,
                             uint32_t height, size_t paddingX, const Options& options);

} // namespace ReferenceConversion
