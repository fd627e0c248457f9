// Calls the samplers of HistogramExtractor on their own, for the sampling tests
// and benchmarks, which compile the samplers into their binaries.
#pragma once

#include "histogramextractor.h"

namespace TarvikViewerTessalPackage
{

struct HistogramSamplingAccess
{
    using Bins = HistogramExtractor::Bins;
    using ImagePointer = HistogramExtractor::ImagePointer;

    // The filter as a number: 0 to 3 for the patterns, 4 for none.
    static constexpr auto pixelColorFilter = &HistogramExtractor::pixelColorFilter;
    static constexpr auto selectUnpackTypes = &HistogramExtractor::selectUnpackTypes;
    static constexpr auto sampleMono = &HistogramExtractor::sampleMono;
    static constexpr auto sampleColor = &HistogramExtractor::sampleColor;

    // The filter by its number, as pixelColorFilter gives it.
    static void sampleBayer(const ImagePointer& image, Bins& red, Bins& green, Bins& blue, int filter)
    {
        HistogramExtractor::sampleBayer(image, red, green, blue,
                                        static_cast<HistogramExtractor::ColorFilter>(filter));
    }
};

} // namespace TarvikViewerTessalPackage
