// Writes an image as a PNG file with libpng: Mono8 and Mono16 as grey, RGB8,
// BGR8, RGBa8 and BGRa8 as colour. Other formats are not written.
#pragma once

#include <TarvikDataProcessingCore/core/IImage.h>

#include <string>

// True when the format can be written.
bool canWritePng(Tarvik::EPixelType pixelType);
// Raises std::runtime_error naming the file when the image cannot be written.
void writePng(const Tarvik::DataProcessing::Core::IImage& image, const std::string& fileName);
