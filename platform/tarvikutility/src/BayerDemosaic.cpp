#include "BayerDemosaic.h"

namespace Tarvik::Conversion
{

void DemosaicRow(const uint16_t* above, const uint16_t* row, const uint16_t* below, uint32_t width,
                 BayerRowKind kind, uint16_t* rgb)
{
    for (uint32_t x = 0; x < width; ++x)
    {
        const Rgb16 pixel = DemosaicPixel(above, row, below, width, x, kind);
        rgb[3 * x + 0] = pixel.red;
        rgb[3 * x + 1] = pixel.green;
        rgb[3 * x + 2] = pixel.blue;
    }
}

} // namespace Tarvik::Conversion
