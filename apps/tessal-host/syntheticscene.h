// The test scene of the synthetic camera: bars of many widths, across and down,
// that drift sideways from frame to frame and go in and out of focus.
//
// The focus follows a triangle over `focusPeriod` frames: frame 0 is the most
// blurred, frame focusPeriod / 2 sharp, and back. A frame is rendered from two
// line profiles (one across, one down) blurred by a Gaussian of the frame's
// defocus, so that a frame costs a few operations per pixel.
//
// Formats: mono and Bayer of every depth and packing, RGB/BGR with and without
// alpha of 8 to 16 bits, and the 5-6-5, 10-in-32 and bit-stream colour packings.
// Planar and YUV formats are refused: their layouts are not rendered.
#pragma once

#include <TarvikBase/PixelType.h>

#include <cstddef>
#include <cstdint>
#include <vector>

class SyntheticScene
{
public:
    static constexpr uint64_t focusPeriod = 120;
    // Frame k + repeatPeriod is rendered as frame k: the bars drift by whole
    // cycles of their pattern in it, and the focus by whole periods.
    static constexpr uint64_t repeatPeriod = 840;
    // Defocus of the most blurred frame, as the Gaussian's sigma in pixels.
    static constexpr double maxBlurSigma = 6.0;

    // Raises std::invalid_argument for a size of 0 or a format it cannot render.
    SyntheticScene(uint32_t width, uint32_t height, Tarvik::EPixelType pixelType);

    uint32_t width() const { return m_width; }
    uint32_t height() const { return m_height; }
    Tarvik::EPixelType pixelType() const { return m_pixelType; }
    // Bytes of one frame without row padding.
    size_t frameSize() const { return m_stride * m_height; }

    // Focus of `frame`, from 0 (most blurred) to 1 (sharp).
    static double focusOf(uint64_t frame);

    // Writes `frame` into `target`, frameSize() bytes.
    void render(uint64_t frame, uint8_t* target) const;

private:
    // Level of a channel (0 red, 1 green, 2 blue) at one pixel, from the two
    // blurred profiles, in [0, 1].
    static double level(int channel, double across, double down);
    void renderRow(const std::vector<double>& across, double down, uint32_t row, uint8_t* target) const;

    uint32_t m_width;
    uint32_t m_height;
    Tarvik::EPixelType m_pixelType;
    size_t m_stride = 0;
    uint32_t m_depth = 0;
    // Channels of a pixel in memory order (0 red, 1 green, 2 blue, 3 alpha);
    // one for mono; for Bayer the two colours of even and odd rows.
    std::vector<int> m_channels;
    std::vector<int> m_bayerRows[2];
    int m_packing = 0;
};
