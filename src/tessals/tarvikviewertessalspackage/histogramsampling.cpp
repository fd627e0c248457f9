// The samplers of HistogramExtractor: the pixel level of the node.
//
// Each sampler fetches the image's layout once and picks one kernel for the
// sample width and layout; the kernels then loop without a question per sample.
// Byte kernels count into small tables on the stack, several per channel, so
// that runs of equal values (the usual smooth camera scene) do not wait on the
// same counter; the tables are checked and added to the bin vectors at the end,
// so a byte image out of range leaves the vectors untouched. Word kernels count
// straight into the bin vectors and stop at the first sample out of range.
#include "histogramextractor.h"

#include <GCBase/GCException.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>

namespace TarvikViewerTessalPackage
{

namespace
{

using Tarvik::EPixelType;

constexpr size_t byteValues = 256;
constexpr const char* outOfRange = "Internal error in histogram sampling. Sample out of range.";

// What the kernels read: rows of `height`, `stride` bytes apart.
struct Rows
{
    const uint8_t* data = nullptr;
    size_t stride = 0;
    uint32_t width = 0;
    uint32_t height = 0;

    const uint8_t* row(uint32_t y) const { return data + y * stride; }
};

// The rows of `image`, of which a kernel reads `bytesPerRow` each. An image
// whose type has no known layout gives no rows.
Rows rowsOf(const Tarvik::DataProcessing::Core::IImage& image, size_t bytesPerPixel)
{
    const EPixelType type = image.getPixelType();
    const auto view = image.getImageData();
    Rows rows;
    rows.width = image.getWidth();
    if (!Tarvik::ComputeStride(rows.stride, type, rows.width, view.paddingX))
        return rows;
    rows.data = static_cast<const uint8_t*>(view.data);
    rows.height = image.getHeight();
    if (rows.width == 0 || rows.height == 0)
        return rows;
    const size_t lastRowEnd = (rows.height - 1) * rows.stride + rows.width * bytesPerPixel;
    if (!rows.data || image.getImageSize() < lastRowEnd || rows.stride < rows.width * bytesPerPixel)
        throw RUNTIME_EXCEPTION("Image buffer of %zu bytes is too small for its size.", image.getImageSize());
    return rows;
}

inline uint16_t word(const uint8_t* at)
{
    uint16_t value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

// Every length must be that of the first vector, the bin count.
size_t commonLength(std::initializer_list<const std::vector<uint32_t>*> vectors)
{
    const size_t bins = (*vectors.begin())->size();
    for (const std::vector<uint32_t>* vector : vectors)
        if (vector->size() != bins)
            throw INVALID_ARGUMENT_EXCEPTION("Histogram bin vectors differ in length.");
    return bins;
}

// Count tables of byte values: `Ways` tables per channel, summed at the end.
// Each table is padded, so that the same value in two tables does not share the
// low address bits by which the processor guesses that a load depends on a store.
template <size_t Channels, size_t Ways>
struct ByteTables
{
    using Table = uint32_t[byteValues + 16];
    Table counts[Channels][Ways] = {};

    uint32_t total(size_t channel, size_t value) const
    {
        uint32_t sum = 0;
        for (size_t way = 0; way < Ways; ++way)
            sum += counts[channel][way][value];
        return sum;
    }

    // Raises the out-of-range failure for a value counted at or above `bins`.
    void requireBelow(size_t bins) const
    {
        for (size_t channel = 0; channel < Channels; ++channel)
            for (size_t value = bins; value < byteValues; ++value)
                if (total(channel, value) != 0)
                    throw RUNTIME_EXCEPTION("%s", outOfRange);
    }

    void addTo(size_t channel, std::vector<uint32_t>& bins) const
    {
        const size_t values = std::min(bins.size(), byteValues);
        for (size_t value = 0; value < values; ++value)
            bins[value] += total(channel, value);
    }
};

void countMonoBytes(const Rows rows, std::vector<uint32_t>& lum)
{
    ByteTables<1, 8> tables;
    auto& way = tables.counts[0];
    for (uint32_t y = 0; y < rows.height; ++y)
    {
        const uint8_t* const row = rows.row(y);
        size_t x = 0;
        // One load of eight samples; each byte goes to a table of its own.
        for (; x + 8 <= rows.width; x += 8)
        {
            uint64_t samples;
            std::memcpy(&samples, row + x, sizeof samples);
            ++way[0][samples & 0xFF];
            ++way[1][(samples >> 8) & 0xFF];
            ++way[2][(samples >> 16) & 0xFF];
            ++way[3][(samples >> 24) & 0xFF];
            ++way[4][(samples >> 32) & 0xFF];
            ++way[5][(samples >> 40) & 0xFF];
            ++way[6][(samples >> 48) & 0xFF];
            ++way[7][samples >> 56];
        }
        for (; x < rows.width; ++x)
            ++way[0][row[x]];
    }
    // Values beyond the bin count go uncounted.
    tables.addTo(0, lum);
}

void countMonoWords(const Rows rows, std::vector<uint32_t>& lum)
{
    uint32_t* const bins = lum.data();
    const size_t binCount = lum.size();
    for (uint32_t y = 0; y < rows.height; ++y)
    {
        const uint8_t* const row = rows.row(y);
        for (size_t x = 0; x < rows.width; ++x)
        {
            const uint16_t value = word(row + 2 * x);
            if (value < binCount)
                ++bins[value];
        }
    }
}

// Channel of each position of the pattern, by filter: even row first, even row
// second, odd row first, odd row second; 0 red, 1 green, 2 blue.
constexpr std::array<std::array<uint8_t, 4>, 4> bayerChannels = {{
    {0, 1, 1, 2}, // BayerRG
    {1, 2, 0, 1}, // BayerGB
    {1, 0, 2, 1}, // BayerGR
    {2, 1, 1, 0}, // BayerBG
}};

// Counts by position in the pattern (row parity, column parity), two tables for
// each, and hands the positions to their channels at the end.
void countBayerBytes(const Rows rows, const std::array<uint8_t, 4>& channels,
                     const std::array<std::vector<uint32_t>*, 3>& outputs)
{
    ByteTables<4, 4> tables;
    const size_t pairs = rows.width / 2;
    for (uint32_t y = 0; y < rows.height; ++y)
    {
        const uint8_t* const row = rows.row(y);
        auto& first = tables.counts[2 * (y & 1)];
        auto& second = tables.counts[2 * (y & 1) + 1];
        size_t pair = 0;
        for (; pair + 4 <= pairs; pair += 4)
        {
            const uint8_t* const samples = row + 2 * pair;
            ++first[0][samples[0]];
            ++second[0][samples[1]];
            ++first[1][samples[2]];
            ++second[1][samples[3]];
            ++first[2][samples[4]];
            ++second[2][samples[5]];
            ++first[3][samples[6]];
            ++second[3][samples[7]];
        }
        for (; pair < pairs; ++pair)
        {
            ++first[0][row[2 * pair]];
            ++second[0][row[2 * pair + 1]];
        }
    }
    tables.requireBelow(outputs[0]->size());
    for (size_t position = 0; position < 4; ++position)
        tables.addTo(position, *outputs[channels[position]]);
}

// Counts straight into the channels, both samples of a pair checked first.
void countBayerWords(const Rows rows, const std::array<uint8_t, 4>& channels,
                     const std::array<std::vector<uint32_t>*, 3>& outputs)
{
    const size_t bins = outputs[0]->size();
    const size_t pairs = rows.width / 2;
    for (uint32_t y = 0; y < rows.height; ++y)
    {
        const uint8_t* const row = rows.row(y);
        uint32_t* const first = outputs[channels[2 * (y & 1)]]->data();
        uint32_t* const second = outputs[channels[2 * (y & 1) + 1]]->data();
        for (size_t pair = 0; pair < pairs; ++pair)
        {
            const uint16_t a = word(row + 4 * pair);
            const uint16_t b = word(row + 4 * pair + 2);
            if (std::max(a, b) >= bins)
                throw RUNTIME_EXCEPTION("%s", outOfRange);
            ++first[a];
            ++second[b];
        }
    }
}

// Byte offsets of red, green and blue within a pixel.
struct ChannelOffsets
{
    size_t red;
    size_t green;
    size_t blue;
};

void countColorBytes(const Rows rows, const ChannelOffsets& offsets,
                     const std::array<std::vector<uint32_t>*, 3>& outputs)
{
    ByteTables<3, 2> tables;
    auto& red = tables.counts[0];
    auto& green = tables.counts[1];
    auto& blue = tables.counts[2];
    for (uint32_t y = 0; y < rows.height; ++y)
    {
        const uint8_t* pixel = rows.row(y);
        size_t x = 0;
        for (; x + 2 <= rows.width; x += 2, pixel += 6)
        {
            ++red[0][pixel[offsets.red]];
            ++green[0][pixel[offsets.green]];
            ++blue[0][pixel[offsets.blue]];
            ++red[1][pixel[3 + offsets.red]];
            ++green[1][pixel[3 + offsets.green]];
            ++blue[1][pixel[3 + offsets.blue]];
        }
        if (x < rows.width)
        {
            ++red[0][pixel[offsets.red]];
            ++green[0][pixel[offsets.green]];
            ++blue[0][pixel[offsets.blue]];
        }
    }
    tables.requireBelow(outputs[0]->size());
    for (size_t channel = 0; channel < 3; ++channel)
        tables.addTo(channel, *outputs[channel]);
}

// Luminance bin of one pixel, in integer arithmetic.
inline size_t luminance(uint64_t red, uint64_t green, uint64_t blue, size_t bins)
{
    const uint64_t value = (299 * red + 587 * green + 114 * blue) / 1000;
    if (value < bins)
        return value;
    return bins == 0 ? 0 : bins - 1;
}

// Counts pixel by pixel: every sample is checked before the pixel is counted.
// The luminance is counted only when `lum` is given.
template <typename Read>
void countColorChecked(const Rows rows, const ChannelOffsets& offsets, size_t bytesPerPixel, Read read,
                       const std::array<std::vector<uint32_t>*, 3>& outputs, std::vector<uint32_t>* lum)
{
    const size_t bins = outputs[0]->size();
    uint32_t* const red = outputs[0]->data();
    uint32_t* const green = outputs[1]->data();
    uint32_t* const blue = outputs[2]->data();
    for (uint32_t y = 0; y < rows.height; ++y)
    {
        const uint8_t* pixel = rows.row(y);
        for (size_t x = 0; x < rows.width; ++x, pixel += bytesPerPixel)
        {
            const size_t r = read(pixel + offsets.red);
            const size_t g = read(pixel + offsets.green);
            const size_t b = read(pixel + offsets.blue);
            if (r >= bins || g >= bins || b >= bins)
                throw RUNTIME_EXCEPTION("%s", outOfRange);
            ++red[r];
            ++green[g];
            ++blue[b];
            if (lum)
                ++(*lum)[luminance(r, g, b, bins)];
        }
    }
}

} // namespace

HistogramExtractor::ColorFilter HistogramExtractor::pixelColorFilter(EPixelType pixelType)
{
    switch (pixelType)
    {
    case Tarvik::PixelType_BayerRG8:
    case Tarvik::PixelType_BayerRG10:
    case Tarvik::PixelType_BayerRG12:
    case Tarvik::PixelType_BayerRG16:
    case Tarvik::PixelType_BayerRG12Packed:
    case Tarvik::PixelType_BayerRG10p:
    case Tarvik::PixelType_BayerRG12p:
        return BayerRG;
    case Tarvik::PixelType_BayerGB8:
    case Tarvik::PixelType_BayerGB10:
    case Tarvik::PixelType_BayerGB12:
    case Tarvik::PixelType_BayerGB16:
    case Tarvik::PixelType_BayerGB12Packed:
    case Tarvik::PixelType_BayerGB10p:
    case Tarvik::PixelType_BayerGB12p:
        return BayerGB;
    case Tarvik::PixelType_BayerGR8:
    case Tarvik::PixelType_BayerGR10:
    case Tarvik::PixelType_BayerGR12:
    case Tarvik::PixelType_BayerGR16:
    case Tarvik::PixelType_BayerGR12Packed:
    case Tarvik::PixelType_BayerGR10p:
    case Tarvik::PixelType_BayerGR12p:
        return BayerGR;
    case Tarvik::PixelType_BayerBG8:
    case Tarvik::PixelType_BayerBG10:
    case Tarvik::PixelType_BayerBG12:
    case Tarvik::PixelType_BayerBG16:
    case Tarvik::PixelType_BayerBG12Packed:
    case Tarvik::PixelType_BayerBG10p:
    case Tarvik::PixelType_BayerBG12p:
        return BayerBG;
    default:
        return Undefined;
    }
}

bool HistogramExtractor::selectUnpackTypes(EPixelType pixelType, EPixelType& sourceType,
                                           EPixelType& targetType)
{
    sourceType = pixelType;
    switch (pixelType)
    {
    case Tarvik::PixelType_Mono1p:
    case Tarvik::PixelType_Mono2p:
    case Tarvik::PixelType_Mono4p:
        targetType = Tarvik::PixelType_Mono8;
        return true;
    case Tarvik::PixelType_Mono10Packed:
    case Tarvik::PixelType_Mono10p:
    case Tarvik::PixelType_Mono12Packed:
    case Tarvik::PixelType_Mono12p:
        targetType = Tarvik::PixelType_Mono16;
        return true;
    // Packed Bayer data is unpacked sample for sample, as packed mono, so that
    // the pattern survives.
    case Tarvik::PixelType_BayerGR12Packed:
    case Tarvik::PixelType_BayerRG12Packed:
    case Tarvik::PixelType_BayerGB12Packed:
    case Tarvik::PixelType_BayerBG12Packed:
        sourceType = Tarvik::PixelType_Mono12Packed;
        targetType = Tarvik::PixelType_Mono16;
        return true;
    case Tarvik::PixelType_BayerBG10p:
    case Tarvik::PixelType_BayerGB10p:
    case Tarvik::PixelType_BayerGR10p:
    case Tarvik::PixelType_BayerRG10p:
        sourceType = Tarvik::PixelType_Mono10p;
        targetType = Tarvik::PixelType_Mono16;
        return true;
    case Tarvik::PixelType_BayerBG12p:
    case Tarvik::PixelType_BayerGB12p:
    case Tarvik::PixelType_BayerGR12p:
    case Tarvik::PixelType_BayerRG12p:
        sourceType = Tarvik::PixelType_Mono12p;
        targetType = Tarvik::PixelType_Mono16;
        return true;
    default:
        targetType = Tarvik::PixelType_Undefined;
        return false;
    }
}

void HistogramExtractor::sampleMono(const ImagePointer& image, Bins& lum)
{
    const uint32_t depth = Tarvik::BitDepth(image->getPixelType());
    if (depth <= 8)
        countMonoBytes(rowsOf(*image, 1), lum);
    else if (depth <= 16)
        countMonoWords(rowsOf(*image, 2), lum);
}

void HistogramExtractor::sampleBayer(const ImagePointer& image, Bins& red, Bins& green, Bins& blue,
                                     ColorFilter filter)
{
    commonLength({&red, &green, &blue});
    if (filter > BayerBG)
        return;
    const std::array<std::vector<uint32_t>*, 3> outputs = {&red, &green, &blue};
    const uint32_t depth = Tarvik::BitDepth(image->getPixelType());
    if (depth <= 8)
        countBayerBytes(rowsOf(*image, 1), bayerChannels[filter], outputs);
    else if (depth <= 16)
        countBayerWords(rowsOf(*image, 2), bayerChannels[filter], outputs);
}

void HistogramExtractor::sampleColor(const ImagePointer& image, Bins& red, Bins& green, Bins& blue, Bins& lum,
                                     bool computeLum)
{
    commonLength({&lum, &red, &green, &blue});
    const std::array<std::vector<uint32_t>*, 3> outputs = {&red, &green, &blue};
    std::vector<uint32_t>* const luminanceBins = computeLum ? &lum : nullptr;
    const auto byte = [](const uint8_t* at) { return *at; };
    switch (image->getPixelType())
    {
    case Tarvik::PixelType_RGB8:
    case Tarvik::PixelType_BGR8:
    {
        const ChannelOffsets offsets = image->getPixelType() == Tarvik::PixelType_RGB8
                                           ? ChannelOffsets{0, 1, 2}
                                           : ChannelOffsets{2, 1, 0};
        if (computeLum)
            countColorChecked(rowsOf(*image, 3), offsets, 3, byte, outputs, luminanceBins);
        else
            countColorBytes(rowsOf(*image, 3), offsets, outputs);
        break;
    }
    case Tarvik::PixelType_RGB16:
        countColorChecked(
            rowsOf(*image, 6), ChannelOffsets{0, 2, 4}, 6, [](const uint8_t* at) { return word(at); },
            outputs, luminanceBins);
        break;
    default:
        break;
    }
}

} // namespace TarvikViewerTessalPackage
