// Reads a PNG file's pixels with libpng into memory the caller gives, as one of
// the package's pixel types: grey as Mono8 or Mono16, RGB as RGB8 or RGB16,
// RGBA as RGBa8. Chosen here: grey below 8 bits and palettes are expanded (a
// palette with transparency to RGBa8), the alpha of grey-alpha images is dropped
// (Mono8 or Mono16), and 16-bit RGBA is reduced to RGBa8, for which no 16-bit type
// exists. 16-bit samples come out little-endian, as the package keeps them.
#pragma once

#include <TarvikBase/PixelType.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

struct PngFrame
{
    Tarvik::EPixelType pixelType = Tarvik::PixelType_Undefined;
    uint32_t width = 0;
    uint32_t height = 0;
};

// Gives the memory for the decoded frame: `size` bytes, rows without padding.
using PngAllocator = std::function<uint8_t*(const PngFrame& frame, size_t size)>;

// Decodes the file's bytes; raises std::runtime_error with libpng's reason for
// a file that is not a PNG, is truncated or corrupt.
PngFrame readPng(const std::vector<uint8_t>& file, const PngAllocator& allocate);
