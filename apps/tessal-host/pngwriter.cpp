#include "pngwriter.h"

#include <png.h>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <vector>

bool canWritePng(Tarvik::EPixelType pixelType)
{
    switch (pixelType)
    {
    case Tarvik::PixelType_Mono8:
    case Tarvik::PixelType_Mono16:
    case Tarvik::PixelType_RGB8:
    case Tarvik::PixelType_BGR8:
    case Tarvik::PixelType_RGBa8:
    case Tarvik::PixelType_BGRa8:
        return true;
    default:
        return false;
    }
}

namespace
{

struct PngLayout
{
    uint32_t width;
    uint32_t height;
    int bitDepth;
    int colourType;
    bool bgr;
    bool swapBytes;
};

// The libpng part, kept free of C++ objects: libpng reports failures by longjmp.
bool writeRows(FILE* file, const PngLayout& layout, png_bytepp rows)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info)
    {
        png_destroy_write_struct(&png, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png)))
    {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    // Fast compression: a run writes many frames, and size matters less than time.
    png_set_compression_level(png, 1);
    png_set_IHDR(png, info, layout.width, layout.height, layout.bitDepth, layout.colourType,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    if (layout.bgr)
        png_set_bgr(png);
    if (layout.swapBytes)
        png_set_swap(png); // our samples are little-endian, PNG's big-endian
    png_write_rows(png, rows, layout.height);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

void writePng(const Tarvik::DataProcessing::Core::IImage& image, const std::string& fileName)
{
    const Tarvik::EPixelType type = image.getPixelType();
    if (!canWritePng(type) || image.hasError(false))
        throw std::runtime_error("cannot write " + fileName + ": no PNG form for this image");
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(fileName.c_str(), "wb"), &std::fclose);
    if (!file)
        throw std::runtime_error("cannot open " + fileName + " for writing");
    const auto data = image.getImageData();
    const bool mono = type == Tarvik::PixelType_Mono8 || type == Tarvik::PixelType_Mono16;
    const bool withAlpha = type == Tarvik::PixelType_RGBa8 || type == Tarvik::PixelType_BGRa8;
    const PngLayout layout{image.getWidth(),
                           image.getHeight(),
                           type == Tarvik::PixelType_Mono16 ? 16 : 8,
                           mono        ? PNG_COLOR_TYPE_GRAY
                           : withAlpha ? PNG_COLOR_TYPE_RGBA
                                       : PNG_COLOR_TYPE_RGB,
                           type == Tarvik::PixelType_BGR8 || type == Tarvik::PixelType_BGRa8,
                           type == Tarvik::PixelType_Mono16};
    const size_t stride = Tarvik::BitPerPixel(type) / 8 * size_t{layout.width} + data.paddingX;
    std::vector<png_bytep> rows(layout.height);
    for (uint32_t y = 0; y < layout.height; ++y)
        rows[y] = const_cast<png_bytep>(static_cast<const uint8_t*>(data.data) + y * stride);
    if (!writeRows(file.get(), layout, rows.data()))
        throw std::runtime_error("cannot write " + fileName + ": libpng failed");
}
