#include "syntheticscene.h"

#include <TarvikBase/PixelTypeInfo.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace
{

constexpr int red = 0;
constexpr int green = 1;
constexpr int blue = 2;
constexpr int alpha = 3;
// Pixels the bars drift per frame.
constexpr double driftPerFrame = 3.0;
// Pixels after which the bar pattern starts over: each width, bar and gap.
constexpr double barCycle = 2.0 * (2.0 + 4.0 + 8.0 + 16.0 + 32.0 + 64.0);
static_assert(SyntheticScene::repeatPeriod % SyntheticScene::focusPeriod == 0 &&
                  static_cast<uint64_t>(SyntheticScene::repeatPeriod * driftPerFrame) %
                          static_cast<uint64_t>(barCycle) ==
                      0,
              "the scene must come back to its first frame after repeatPeriod frames");

int channelOf(char letter)
{
    return letter == 'R' ? red : letter == 'G' ? green : blue;
}

// Bars whose widths grow from 2 to 64 pixels and start over: fine and coarse
// detail everywhere in the frame. 1 on a bar, 0 between.
double bar(double position)
{
    double within = std::fmod(position, barCycle);
    if (within < 0)
        within += barCycle;
    for (double width = 2.0;; width *= 2.0)
    {
        if (within < 2.0 * width)
            return within < width ? 1.0 : 0.0;
        within -= 2.0 * width;
    }
}

// The bar profile over `count` positions from `start`, blurred by a Gaussian of `sigma`.
std::vector<double> blurredProfile(size_t count, double start, double sigma)
{
    const int radius = static_cast<int>(std::ceil(3.0 * sigma));
    std::vector<double> weights(static_cast<size_t>(2 * radius + 1), 1.0);
    double sum = 0.0;
    for (int i = -radius; i <= radius; ++i)
    {
        const double w = sigma > 0.0 ? std::exp(-0.5 * i * i / (sigma * sigma)) : 1.0;
        weights[static_cast<size_t>(i + radius)] = w;
        sum += w;
    }
    std::vector<double> sharp(count + 2 * static_cast<size_t>(radius));
    for (size_t i = 0; i < sharp.size(); ++i)
        sharp[i] = bar(start + static_cast<double>(i) - radius);
    std::vector<double> profile(count);
    for (size_t i = 0; i < count; ++i)
    {
        double value = 0.0;
        for (size_t k = 0; k < weights.size(); ++k)
            value += weights[k] * sharp[i + k];
        profile[i] = value / sum;
    }
    return profile;
}

} // namespace

SyntheticScene::SyntheticScene(uint32_t width, uint32_t height, Tarvik::EPixelType pixelType)
    : m_width(width)
    , m_height(height)
    , m_pixelType(pixelType)
{
    const Tarvik::PixelTypeInfo* const info = Tarvik::FindPixelTypeInfo(pixelType);
    if (!info)
        throw std::invalid_argument("the synthetic camera knows no pixel type 0x" +
                                    std::to_string(pixelType));
    if (width == 0 || height == 0)
        throw std::invalid_argument("the synthetic camera needs a width and height above 0");
    const std::string name = info->name;
    const bool supported =
        info->family == Tarvik::PixelFamily::Mono || info->family == Tarvik::PixelFamily::Bayer ||
        (info->family == Tarvik::PixelFamily::Color && info->packing != Tarvik::PixelPacking::Planar);
    if (!supported)
        throw std::invalid_argument("the synthetic camera does not render " + name);
    if (!Tarvik::ComputeStride(m_stride, pixelType, width, 0))
        throw std::invalid_argument("the synthetic camera cannot lay out " + name);
    // The 5-6-5 packing scales its channels down from 8-bit samples.
    m_depth = info->packing == Tarvik::PixelPacking::Packed565 ? 8 : info->bitDepth;
    m_packing = static_cast<int>(info->packing);
    if (info->family == Tarvik::PixelFamily::Mono)
        m_channels = {green};
    else if (info->family == Tarvik::PixelFamily::Bayer)
    {
        // "BayerRG8": red and green on even rows, green and blue on odd rows.
        const int first = channelOf(name[5]);
        const int second = channelOf(name[6]);
        m_bayerRows[0] = {first, second};
        m_bayerRows[1] = {first == green ? (second == red ? blue : red) : green,
                          second == green ? (first == red ? blue : red) : green};
        m_channels = {green};
    }
    else
    {
        for (const char letter : name.substr(0, 3))
            m_channels.push_back(channelOf(letter));
        if (name.size() > 3 && name[3] == 'a')
            m_channels.push_back(alpha);
    }
}

double SyntheticScene::focusOf(uint64_t frame)
{
    const double phase = static_cast<double>(frame % focusPeriod) / static_cast<double>(focusPeriod);
    return 1.0 - std::fabs(2.0 * phase - 1.0);
}

double SyntheticScene::level(int channel, double across, double down)
{
    switch (channel)
    {
    case red:
        return 0.1 + 0.8 * across;
    case blue:
        return 0.1 + 0.8 * down;
    case alpha:
        return 1.0;
    default:
        return 0.1 + 0.4 * (across + down);
    }
}

void SyntheticScene::render(uint64_t frame, uint8_t* target) const
{
    const double sigma = maxBlurSigma * (1.0 - focusOf(frame));
    const std::vector<double> across =
        blurredProfile(m_width, driftPerFrame * static_cast<double>(frame), sigma);
    const std::vector<double> down = blurredProfile(m_height, 0.0, sigma);
    for (uint32_t y = 0; y < m_height; ++y)
        renderRow(across, down[y], y, target + y * m_stride);
}

void SyntheticScene::renderRow(const std::vector<double>& across, double down, uint32_t row,
                               uint8_t* target) const
{
    const double top = static_cast<double>((1u << m_depth) - 1u);
    const std::vector<int>& bayer = m_bayerRows[row % 2];
    std::vector<uint32_t> samples;
    samples.reserve(size_t{m_width} * m_channels.size());
    for (uint32_t x = 0; x < m_width; ++x)
    {
        if (!bayer.empty())
            samples.push_back(static_cast<uint32_t>(std::lround(level(bayer[x % 2], across[x], down) * top)));
        else
            for (const int channel : m_channels)
                samples.push_back(static_cast<uint32_t>(std::lround(level(channel, across[x], down) * top)));
    }

    std::fill(target, target + m_stride, uint8_t{0});
    switch (static_cast<Tarvik::PixelPacking>(m_packing))
    {
    case Tarvik::PixelPacking::Unpacked:
        for (size_t i = 0; i < samples.size(); ++i)
        {
            if (m_depth == 8)
                target[i] = static_cast<uint8_t>(samples[i]);
            else
            {
                target[2 * i] = static_cast<uint8_t>(samples[i]);
                target[2 * i + 1] = static_cast<uint8_t>(samples[i] >> 8);
            }
        }
        break;
    case Tarvik::PixelPacking::GroupedMsb:
    {
        const uint32_t low = m_depth - 8;
        const uint32_t lowMask = (1u << low) - 1u;
        for (size_t i = 0; i < samples.size(); i += 2)
        {
            const uint32_t first = samples[i];
            const uint32_t second = i + 1 < samples.size() ? samples[i + 1] : 0;
            uint8_t* const group = target + i / 2 * 3;
            group[0] = static_cast<uint8_t>(first >> low);
            group[1] = static_cast<uint8_t>((first & lowMask) | ((second & lowMask) << 4));
            if (i + 1 < samples.size())
                group[2] = static_cast<uint8_t>(second >> low);
        }
        break;
    }
    case Tarvik::PixelPacking::LsbStream:
    {
        size_t bit = 0;
        for (const uint32_t sample : samples)
            for (uint32_t b = 0; b < m_depth; ++b, ++bit)
                if ((sample >> b) & 1u)
                    target[bit / 8] = static_cast<uint8_t>(target[bit / 8] | (1u << (bit % 8)));
        break;
    }
    case Tarvik::PixelPacking::Packed565:
        for (uint32_t x = 0; x < m_width; ++x)
        {
            const uint32_t* const s = &samples[3 * size_t{x}];
            const uint32_t word = (s[0] * 31 / 255) | ((s[1] * 63 / 255) << 5) | ((s[2] * 31 / 255) << 11);
            target[2 * x] = static_cast<uint8_t>(word);
            target[2 * x + 1] = static_cast<uint8_t>(word >> 8);
        }
        break;
    case Tarvik::PixelPacking::Packed10In32:
        for (uint32_t x = 0; x < m_width; ++x)
        {
            const uint32_t* const s = &samples[3 * size_t{x}];
            const uint32_t word = s[0] | (s[1] << 10) | (s[2] << 20);
            for (int b = 0; b < 4; ++b)
                target[4 * x + b] = static_cast<uint8_t>(word >> (8 * b));
        }
        break;
    case Tarvik::PixelPacking::Planar:
        break;
    }
}
