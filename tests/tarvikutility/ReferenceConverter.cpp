#include "ReferenceConverter.h"

#include <TarvikBase/PixelTypeInfo.h>

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace ReferenceConversion
{
namespace
{

using namespace Tarvik;

enum class Layout
{
    Byte,
    Word,
    Grouped,
    LsbBits,
    Rgb565,
    Rgb10In32,
    Planar,
    YuvGroups,
};

enum class Kind
{
    Mono,
    Bayer,
    Rgb,
    Yuv,
};

// Where the samples of a group of YUV pixels lie among its bytes.
struct YuvGroup
{
    uint32_t pixels;
    uint32_t bytes;
    std::array<uint32_t, 4> luma;
    uint32_t u;
    uint32_t v;
};

struct Format
{
    Kind kind;
    Layout layout;
    uint32_t depth;
    uint32_t samplesPerPixel; // interleaved samples stored per pixel
    bool blueFirst;
    std::string_view bayerFirstRow; // colours of (0,0) and (1,0)
    YuvGroup yuv{};
};

Format Describe(EPixelType type)
{
    const PixelTypeInfo* info = FindPixelTypeInfo(type);
    if (info == nullptr)
        throw std::invalid_argument("reference: unknown type");
    const std::string_view name = info->name;
    const uint32_t depth = info->bitDepth;
    if (name.starts_with("Bayer") || name.starts_with("Mono"))
    {
        const Layout layout = name.ends_with("Packed") ? Layout::Grouped
                              : name.ends_with("p")    ? Layout::LsbBits
                              : depth == 8             ? Layout::Byte
                                                       : Layout::Word;
        const bool bayer = name.starts_with("Bayer");
        return {bayer ? Kind::Bayer : Kind::Mono, layout, depth, 1, false, bayer ? name.substr(5, 2) : ""};
    }
    if (name.starts_with("YUV"))
    {
        const YuvGroup group = name == "YUV422_8_UYVY" ? YuvGroup{2, 4, {1, 3}, 0, 2}
                               : name == "YUV422_8"    ? YuvGroup{2, 4, {0, 2}, 1, 3}
                               : name == "YUV8_UYV"    ? YuvGroup{1, 3, {1}, 0, 2}
                                                       : YuvGroup{4, 6, {1, 2, 4, 5}, 0, 3};
        return {Kind::Yuv, Layout::YuvGroups, 8, 0, false, {}, group};
    }
    const bool blueFirst = name.starts_with("BGR");
    if (name.ends_with("_Planar"))
        return {Kind::Rgb, Layout::Planar, depth, 1, false, {}};
    if (name.ends_with("565p"))
        return {Kind::Rgb, Layout::Rgb565, 6, 3, blueFirst, {}};
    if (name == "RGB10p32")
        return {Kind::Rgb, Layout::Rgb10In32, 10, 3, false, {}};
    if (name.ends_with("p"))
        return {Kind::Rgb, Layout::LsbBits, depth, 3, blueFirst, {}};
    const uint32_t samples = name.find('a') != std::string_view::npos ? 4 : 3;
    return {Kind::Rgb, depth == 8 ? Layout::Byte : Layout::Word, depth, samples, blueFirst, {}};
}

using Rgb = std::array<uint32_t, 3>;

// Colour letter of any position of the endless Bayer pattern.
char BayerColour(std::string_view firstRow, int64_t x, int64_t y)
{
    const char first = firstRow[static_cast<size_t>(x & 1)];
    if ((y & 1) == 0)
        return first;
    if (first == 'G')
        return firstRow[0] == 'G' ? (firstRow[1] == 'R' ? 'B' : 'R') : (firstRow[0] == 'R' ? 'B' : 'R');
    return 'G';
}

class SourceReader
{
public:
    SourceReader(const std::vector<uint8_t>& data, EPixelType type, const Format& format, uint32_t width,
                 uint32_t height, size_t paddingX)
        : m_data(data)
        , m_format(format)
        , m_width(width)
        , m_height(height)
    {
        // Each plane of a planar format has rows of its own, one sample per pixel.
        const uint64_t bitsPerPixel = format.layout == Layout::Planar ? (format.depth <= 8 ? 8 : 16)
                                                                      : FindPixelTypeInfo(type)->bitsPerPixel;
        m_stride = (uint64_t{width} * bitsPerPixel + 7) / 8 + paddingX;
    }

    uint8_t Byte(uint32_t y, size_t offset, uint32_t plane = 0) const
    {
        const size_t at = (size_t{plane} * m_height + y) * m_stride + offset;
        if (at >= m_data.size())
            throw std::out_of_range("reference: read outside the source");
        return m_data[at];
    }

    uint32_t Word(uint32_t y, size_t offset, uint32_t plane = 0) const
    {
        return Byte(y, offset, plane) | (Byte(y, offset + 1, plane) << 8);
    }

    // `count` bits from `firstBit` on, least significant bit first.
    uint32_t Bits(uint32_t y, uint64_t firstBit, uint32_t count) const
    {
        uint32_t value = 0;
        for (uint64_t bit = firstBit; bit < firstBit + count; ++bit)
            value |= ((Byte(y, bit / 8) >> (bit % 8)) & 1u) << (bit - firstBit);
        return value;
    }

    uint32_t Clamp(uint32_t value) const { return std::min(value, (1u << m_format.depth) - 1); }

    // Sample `c` of pixel (x, y) of every layout but YUV.
    uint32_t Sample(uint32_t x, uint32_t y, uint32_t c = 0) const
    {
        const size_t index = size_t{x} * m_format.samplesPerPixel + c;
        switch (m_format.layout)
        {
        case Layout::Byte:
            return Byte(y, index);
        case Layout::Word:
            return Clamp(Word(y, 2 * index));
        case Layout::LsbBits:
            return Bits(y, uint64_t{index} * m_format.depth, m_format.depth);
        case Layout::Planar:
            return m_format.depth <= 8 ? Byte(y, x, c) : Clamp(Word(y, 2 * size_t{x}, c));
        case Layout::Rgb10In32:
            return Bits(y, 32 * uint64_t{x} + 10 * c, 10);
        case Layout::Rgb565: // 5-bit red and blue read as 6-bit values
            return c == 1 ? Bits(y, 16 * uint64_t{x} + 5, 6)
                          : 2 * Bits(y, 16 * uint64_t{x} + 11 * (c / 2), 5);
        case Layout::Grouped:
        {
            const uint32_t lowBits = m_format.depth - 8;
            const size_t group = 3 * size_t{x / 2};
            const uint32_t middle = Byte(y, group + 1);
            if (x % 2 == 0)
                return (Byte(y, group) << lowBits) | (middle & ((1u << lowBits) - 1));
            return (Byte(y, group + 2) << lowBits) | ((middle >> 4) & ((1u << lowBits) - 1));
        }
        default:
            throw std::logic_error("reference: YUV has no single samples");
        }
    }

    // Y, U, V of a YUV pixel; 128 for a V that its group would hold beyond the row end.
    std::array<int32_t, 3> Yuv(uint32_t x, uint32_t y) const
    {
        const YuvGroup& group = m_format.yuv;
        const size_t first = size_t{x / group.pixels} * group.bytes;
        const bool hasV = x / group.pixels * group.pixels + group.pixels / 2 < m_width;
        return {Byte(y, first + group.luma[x % group.pixels]), Byte(y, first + group.u),
                hasV ? Byte(y, first + group.v) : 128};
    }

    Rgb Colour(uint32_t x, uint32_t y) const
    {
        if (m_format.kind == Kind::Bayer)
            return Demosaiced(x, y);
        if (m_format.kind == Kind::Yuv)
        {
            const auto [luma, u, v] = Yuv(x, y);
            const auto clamp = [](int32_t value) { return static_cast<uint32_t>(std::clamp(value, 0, 255)); };
            const int32_t d = u - 128, e = v - 128;
            return {clamp(luma + ((359 * e + 128) >> 8)), clamp(luma + ((-88 * d - 183 * e + 128) >> 8)),
                    clamp(luma + ((454 * d + 128) >> 8))};
        }
        Rgb s{Sample(x, y, 0), Sample(x, y, 1), Sample(x, y, 2)};
        if (m_format.blueFirst)
            std::swap(s[0], s[2]);
        return s;
    }

    // Own sample, and the others estimated from the neighbours; green first, as the
    // estimate of a colour that has no neighbour here.
    Rgb Demosaiced(uint32_t x, uint32_t y) const
    {
        const char own = BayerColour(m_format.bayerFirstRow, x, y);
        const uint32_t raw = Sample(x, y);
        const uint32_t greenValue = own == 'G' ? raw : Estimate(x, y, 'G').value_or(raw);
        const auto channel = [&](char colour) -> uint32_t
        {
            if (colour == own)
                return raw;
            if (colour == 'G')
                return greenValue;
            return Estimate(x, y, colour).value_or(greenValue);
        };
        return {channel('R'), channel('G'), channel('B')};
    }

    // The mean of the nearest samples of `colour`: the ones among the eight
    // neighbours whose pattern position has that colour, mirrored into the image.
    std::optional<uint32_t> Estimate(uint32_t x, uint32_t y, char colour) const
    {
        uint32_t sum = 0, count = 0;
        for (int dy = -1; dy <= 1; ++dy)
        {
            for (int dx = -1; dx <= 1; ++dx)
            {
                if ((dx == 0 && dy == 0) || BayerColour(m_format.bayerFirstRow, x + dx, y + dy) != colour)
                    continue;
                const auto mx = Mirror(int64_t{x} + dx, m_width);
                const auto my = Mirror(int64_t{y} + dy, m_height);
                if (!mx || !my)
                    continue;
                sum += Sample(*mx, *my);
                ++count;
            }
        }
        if (count == 0)
            return std::nullopt;
        return (sum + count / 2) / count;
    }

    static std::optional<uint32_t> Mirror(int64_t at, uint32_t size)
    {
        if (at < 0)
            at = -at;
        if (at >= size)
            at = 2 * int64_t{size} - 2 - at;
        if (at < 0 || at >= size)
            return std::nullopt;
        return static_cast<uint32_t>(at);
    }

private:
    const std::vector<uint8_t>& m_data;
    const Format& m_format;
    uint32_t m_width;
    uint32_t m_height;
    size_t m_stride;
};

uint32_t Depth(uint32_t value, uint32_t from, uint32_t to, bool msbAligned)
{
    if (from > to)
        return value >> (from - to);
    return msbAligned ? value << (to - from) : value;
}

} // namespace

std::vector<uint8_t> Convert(const std::vector<uint8_t>& source, EPixelType type, uint32_t width,
                             uint32_t height, size_t paddingX, const Options& options)
{
    const Format format = Describe(type);
    const SourceReader reader(source, type, format, width, height, paddingX);

    const bool mono = options.output == PixelType_Mono8 || options.output == PixelType_Mono16;
    const uint32_t outDepth = FindPixelTypeInfo(options.output)->bitDepth;
    const size_t outBytes = FindPixelTypeInfo(options.output)->bitsPerPixel / 8;
    const size_t stride = outBytes * width + options.outputPaddingX;
    std::vector<uint8_t> result(stride * height, options.paddingFill);

    for (uint32_t y = 0; y < height; ++y)
    {
        uint8_t* row = result.data() + (options.reverseRows ? height - 1 - y : y) * stride;
        for (uint32_t x = 0; x < width; ++x)
        {
            const bool frame = x == 0 || y == 0 || x + 1 == width || y + 1 == height;
            Rgb rgb{};
            const bool grey = format.kind == Kind::Mono || (format.kind == Kind::Yuv && mono);
            if (format.kind == Kind::Mono)
                rgb.fill(reader.Sample(x, y));
            else if (grey)
                rgb.fill(static_cast<uint32_t>(reader.Yuv(x, y)[0]));
            else if (format.kind != Kind::Bayer || !frame || options.extrapolateEdges)
                rgb = reader.Colour(x, y);
            for (uint32_t& sample : rgb)
                sample = Depth(sample, format.depth, outDepth, options.msbAligned);
            std::array<uint32_t, 4> samples = {rgb[0], rgb[1], rgb[2], 0};
            if (mono && !grey)
                samples[0] = (77 * rgb[0] + 150 * rgb[1] + 29 * rgb[2] + 128) / 256;
            else if (options.output == PixelType_BGRa8)
                samples = {rgb[2], rgb[1], rgb[0], 255};
            // Little-endian samples: one for mono, three for RGB, four for BGRa.
            const size_t sampleBytes = outDepth / 8;
            for (size_t i = 0; i < outBytes / sampleBytes; ++i)
                for (size_t byte = 0; byte < sampleBytes; ++byte)
                    row[x * outBytes + i * sampleBytes + byte] =
                        static_cast<uint8_t>(samples[i] >> (8 * byte));
        }
    }
    return result;
}

} // namespace ReferenceConversion
