// Test images from known samples: a grid of sample values (row by row, the
// samples of a pixel one after the other) encoded into the bytes of a pixel
// format, rows padded with bytes that would be counted if they were read.
#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace HistogramTest
{

// How the samples of one row lie in memory.
enum class Packing
{
    Bytes,      // one byte per sample
    Words,      // 16-bit little-endian words
    LsbStream,  // `bits` per sample, least significant bit first, rows start on a byte
    GroupedMsb, // two samples in three bytes: high bits outside, low bits in the middle
};

struct SampleGrid
{
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t samplesPerPixel = 1;
    std::vector<uint16_t> samples; // width * samplesPerPixel per row

    uint16_t at(uint32_t x, uint32_t y, uint32_t sample = 0) const
    {
        return samples[(size_t{y} * width + x) * samplesPerPixel + sample];
    }
};

// Samples below `limit`, from a fixed seed.
inline SampleGrid randomGrid(uint32_t width, uint32_t height, uint32_t samplesPerPixel, uint32_t limit,
                             uint32_t seed)
{
    SampleGrid grid{width, height, samplesPerPixel, {}};
    std::mt19937 random(seed);
    std::uniform_int_distribution<uint32_t> value(0, limit - 1);
    grid.samples.resize(size_t{width} * height * samplesPerPixel);
    for (uint16_t& sample : grid.samples)
        sample = static_cast<uint16_t>(value(random));
    return grid;
}

// The bytes of the grid's image with `paddingX` bytes of 0xA5 after each row.
inline std::vector<uint8_t> encode(const SampleGrid& grid, Packing packing, uint32_t bits, size_t paddingX)
{
    // Bytes and words are bit streams too, of 8 and 16 bits a sample.
    if (packing == Packing::Bytes || packing == Packing::Words)
        bits = packing == Packing::Bytes ? 8 : 16;
    const size_t rowSamples = size_t{grid.width} * grid.samplesPerPixel;
    const size_t rowBytes =
        packing == Packing::GroupedMsb ? (rowSamples * 3 + 1) / 2 : (rowSamples * bits + 7) / 8;
    std::vector<uint8_t> bytes((rowBytes + paddingX) * grid.height, 0);
    for (uint32_t y = 0; y < grid.height; ++y)
    {
        uint8_t* const row = bytes.data() + y * (rowBytes + paddingX);
        const uint16_t* const samples = grid.samples.data() + y * rowSamples;
        for (size_t i = 0; i < rowSamples; ++i)
        {
            const uint16_t value = samples[i];
            if (packing != Packing::GroupedMsb)
            {
                for (uint32_t bit = 0; bit < bits; ++bit)
                    if (value & (1u << bit))
                        row[(i * bits + bit) / 8] |= static_cast<uint8_t>(1u << ((i * bits + bit) % 8));
                continue;
            }
            const uint32_t lowBits = bits - 8;
            uint8_t* const group = row + 3 * (i / 2);
            group[i % 2 == 0 ? 0 : 2] = static_cast<uint8_t>(value >> lowBits);
            group[1] |= static_cast<uint8_t>((value & ((1u << lowBits) - 1)) << (i % 2 == 0 ? 0 : 4));
        }
        std::fill_n(row + rowBytes, paddingX, 0xA5);
    }
    return bytes;
}

} // namespace HistogramTest
