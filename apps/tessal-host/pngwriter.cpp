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

void writePng(const Tarvik::DataProcessing::Core::IImage& image, const std::string& fileName)
{
    const Tarvik::EPixelType type = image.getPixelType();
    if (!canWritePng(type) || image.hasError(false))
        throw std::runtime_error("cannot write " + fileName + ": no PNG form for this image");
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(fileName.c_str(), "wb"), &std::fclose);
    if (!file)
        throw std::runtime_error("cannot open " + fileName + " for writing");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info)
    {
        png_destroy_write_struct(&png, nullptr);
        throw std::runtime_error("cannot write " + fileName + ": libpng could not start");
    }
    const auto data = image.getImageData();
    const uint32_t width = image.getWidth();
    const uint32_t height = image.getHeight();
    const size_t stride = Tarvik::BitPerPixel(type) / 8 * size_t{width} + data.paddingX;
    std::vector<png_const_bytep> rows(height);
    for (uint32_t y = 0; y < height; ++y)
        rows[y] = static_cast<const uint8_t*>(data.data) + y * stride;

    if (setjmp(png_jmpbuf(png)))
    {
        png_destroy_write_struct(&png, &info);
        throw std::runtime_error("cannot write " + fileName + ": libpng failed");
    }
    png_init_io(png, file.get());
    // Fast compression: a run writes many frames, and size matters less than time.
    png_set_compression_level(png, 1);
    const bool mono = type == Tarvik::PixelType_Mono8 || type == Tarvik::PixelType_Mono16;
    const bool withAlpha = type == Tarvik::PixelType_RGBa8 || type == Tarvik::PixelType_BGRa8;
    png_set_IHDR(png, info, width, height, type == Tarvik::PixelType_Mono16 ? 16 : 8,
                 mono        ? PNG_COLOR_TYPE_GRAY
                 : withAlpha ? PNG_COLOR_TYPE_RGBA
                             : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    if (type == Tarvik::PixelType_BGR8 || type == Tarvik::PixelType_BGRa8)
        png_set_bgr(png);
    if (type == Tarvik::PixelType_Mono16)
        png_set_swap(png); // our samples are little-endian, PNG's big-endian
    png_write_rows(png, const_cast<png_bytepp>(rows.data()), height);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
}
