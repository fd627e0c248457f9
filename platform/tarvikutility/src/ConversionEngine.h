// Runs one checked conversion row by row: picks the row path once, then
// converts every source row into its target row, on up to maxNumThreads threads.
#pragma once

#include "ImageLayout.h"

#include <TarvikUtility/ImageFormatConverterSettings.h>

namespace Tarvik::Conversion
{

struct ConversionJob
{
    SourceImage source;
    TargetImage target;
    ImageFormatConverterSettings settings;
    // The source's row order differs from the output's.
    bool reverseRows;
};

// The job's views must already be checked against their buffers.
void RunConversion(const ConversionJob& job);

} // namespace Tarvik::Conversion
