// Vector row kernels for the packed layouts cameras send to save bandwidth:
// 10- and 12-bit least-significant-bit-first streams (Mono10p, Mono12p, the
// Bayer..p types) and 10- and 12-bit pairs in three bytes (Mono10Packed,
// Mono12Packed, Bayer..12Packed), 1-, 2- and 4-bit mono streams, and 16-bit
// words of fewer significant bits. The instruction set is chosen at run time;
// each kernel gives exactly the samples of the scalar unpacker, which also does
// every row's tail. Kernels with a `stream` flag write with non-temporal stores
// where the target row's alignment allows; the caller ends its rows with
// hwy::FlushStream.
#pragma once

#include "SourceFormat.h"

#include <cstdint>

namespace Tarvik::Conversion
{

// The format's rows can go through the kernels below.
bool HasPackedRowKernel(const SourceFormat& format);

// Width samples as little-endian 16-bit words: the plain value, or with
// `msbAligned` moved to the top bits of the word.
void PackedRowToWords(const uint8_t* source, uint8_t* target, uint32_t width, const SourceFormat& format,
                      bool msbAligned, bool stream);

// Width samples to their top 8 bits.
void PackedRowToMono8(const uint8_t* source, uint8_t* target, uint32_t width, const SourceFormat& format,
                      bool stream);

// Width samples of a 1-, 2- or 4-bit mono stream to bytes: the plain value, or
// with `msbAligned` moved to the top bits of the byte.
void PackedBitsRowToMono8(const uint8_t* source, uint8_t* target, uint32_t width, const SourceFormat& format,
                          bool msbAligned);

// Width little-endian words of `depth` significant bits, clamped to their maximum.
void ClampedWordsRow(const uint8_t* source, uint16_t* target, uint32_t width, uint32_t depth);

} // namespace Tarvik::Conversion
