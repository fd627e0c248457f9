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
    static int pixelColorFilter(Tarvik::EPixelType type)
    {
        return HistogramExtractor::pixelColorFilter(type);
    }

    static bool selectUnpackTypes(Tarvik::EPixelType type, Tarvik::EPixelType& source,
                                  Tarvik::EPixelType& target)
    {
        return HistogramExtractor::selectUnpackTypes(type, source, target);
    }

    static void sampleMono(const ImagePointer& image, Bins& lum)
    {
        HistogramExtractor::sampleMono(image, lum);
    }

    static void sampleBayer(const ImagePointer& image, Bins& red, Bins& green, Bins& blue, int filter)
    {
        HistogramExtractor::sampleBayer(image, red, green, blue,
                                        static_cast<HistogramExtractor::ColorFilter>(filter));
    }

    static void sampleColor(const ImagePointer& image, Bins& red, Bins& green, Bins& blue, Bins& lum,
                            bool computeLum)
    {
        HistogramExtractor::sampleColor(image, red, green, blue, lum, computeLum);
    }
};

} // namespace TarvikViewerTessalPackage
