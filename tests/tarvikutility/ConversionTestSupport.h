// Helpers the converter tests share: seeded source images of exactly the size a
// layout needs, so that the sanitizers see any read or write past them.
#pragma once

#include <TarvikBase/PixelType.h>
#include <TarvikBase/PixelTypeMapper.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace ConversionTestSupport
{

// Bytes of an image without the padding after its last row: the least a
// conversion accepts.
inline size_t MinimalBytes(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX)
{
    return Tarvik::ComputeBufferSize(type, width, height, paddingX) - paddingX;
}

inline std::vector<uint8_t> RandomBytes(size_t count, uint32_t seed)
{
    std::mt19937 generator(seed);
    std::uniform_int_distribution<int> byte(0, 255);
    std::vector<uint8_t> bytes(count);
    for (auto& value : bytes)
        value = static_cast<uint8_t>(byte(generator));
    return bytes;
}

// What the converter makes of rows without padding, in a target of the size it asks for.
inline std::vector<uint8_t> Converted(Tarvik::CImageFormatConverter& converter,
                                      const std::vector<uint8_t>& source, Tarvik::EPixelType type,
                                      uint32_t width, uint32_t height)
{
    std::vector<uint8_t> target(converter.GetBufferSizeForConversion(width, height));
    converter.Convert(target.data(), target.size(), source.data(), source.size(), type, width, height, 0);
    return target;
}

inline std::string NameOf(Tarvik::EPixelType type)
{
    return Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(type).c_str();
}

} // namespace ConversionTestSupport
