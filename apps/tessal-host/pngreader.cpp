#include "pngreader.h"

#include <png.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

namespace
{

struct PngInput
{
    const uint8_t* data;
    size_t size;
    size_t offset;
};

struct PngFailure
{
    char text[200];
};

using Allocate = uint8_t* (*)(void* context, const PngFrame& frame, size_t size);

void onError(png_structp png, png_const_charp message)
{
    auto* const failure = static_cast<PngFailure*>(png_get_error_ptr(png));
    std::snprintf(failure->text, sizeof failure->text, "%s", message);
    png_longjmp(png, 1);
}

void onWarning(png_structp, png_const_charp) {}

void readBytes(png_structp png, png_bytep out, size_t length)
{
    auto* const input = static_cast<PngInput*>(png_get_io_ptr(png));
    if (length > input->size - input->offset)
        png_error(png, "the file ends early (truncated)");
    std::memcpy(out, input->data + input->offset, length);
    input->offset += length;
}

Tarvik::EPixelType pixelTypeOf(int channels, int bitDepth)
{
    switch (channels)
    {
    case 1:
        return bitDepth == 16 ? Tarvik::PixelType_Mono16 : Tarvik::PixelType_Mono8;
    case 3:
        return bitDepth == 16 ? Tarvik::PixelType_RGB16 : Tarvik::PixelType_RGB8;
    default:
        return Tarvik::PixelType_RGBa8;
    }
}

// The libpng part, kept free of C++ objects: libpng reports failures by longjmp.
bool decode(PngInput* input, PngFailure* failure, Allocate allocate, void* context, PngFrame* frame)
{
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, failure, onError, onWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info)
    {
        png_destroy_read_struct(&png, nullptr, nullptr);
        std::snprintf(failure->text, sizeof failure->text, "libpng could not start");
        return false;
    }
    if (setjmp(png_jmpbuf(png)))
    {
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    png_set_read_fn(png, input, readBytes);
    png_read_info(png, info);
    // Deflate packs at most 1032 bytes into one, so a file too short for the pixels it
    // declares is refused here, before their memory is asked for.
    const uint64_t storedBytes =
        (uint64_t{png_get_rowbytes(png, info)} - 1) * png_get_image_height(png, info);
    if (storedBytes / 1032 > input->size - input->offset)
        png_error(png, "the file is too short for the size it declares (truncated)");
    const int colourType = png_get_color_type(png, info);
    png_set_expand_gray_1_2_4_to_8(png);
    if (colourType == PNG_COLOR_TYPE_PALETTE)
    {
        png_set_palette_to_rgb(png);
        if (png_get_valid(png, info, PNG_INFO_tRNS))
            png_set_tRNS_to_alpha(png);
    }
    if (colourType == PNG_COLOR_TYPE_GRAY_ALPHA)
        png_set_strip_alpha(png);
    if (colourType == PNG_COLOR_TYPE_RGB_ALPHA)
        png_set_strip_16(png);
    png_set_swap(png);
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);

    frame->width = png_get_image_width(png, info);
    frame->height = png_get_image_height(png, info);
    frame->pixelType = pixelTypeOf(png_get_channels(png, info), png_get_bit_depth(png, info));
    const size_t rowBytes = png_get_rowbytes(png, info);
    uint8_t* const pixels = allocate(context, *frame, rowBytes * frame->height);
    if (!pixels)
        png_error(png, "no memory for the frame");
    for (int pass = 0; pass < passes; ++pass)
        for (uint32_t y = 0; y < frame->height; ++y)
            png_read_row(png, pixels + y * rowBytes, nullptr);
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return true;
}

uint8_t* callAllocator(void* context, const PngFrame& frame, size_t size)
{
    try
    {
        return (*static_cast<const PngAllocator*>(context))(frame, size);
    }
    catch (...)
    {
        return nullptr;
    }
}

} // namespace

PngFrame readPng(const std::vector<uint8_t>& file, const PngAllocator& allocate)
{
    PngInput input{file.data(), file.size(), 0};
    PngFailure failure{};
    PngFrame frame;
    if (!decode(&input, &failure, callAllocator, const_cast<PngAllocator*>(&allocate), &frame))
        throw std::runtime_error(failure.text);
    return frame;
}
