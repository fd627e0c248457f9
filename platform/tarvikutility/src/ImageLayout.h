// Checked views of the source and target memory of one conversion. Every row
// pointer they give lies inside the buffer they were made from.
#pragma once

#include "SourceFormat.h"

#include <TarvikUtility/ImageFormatConverterSettings.h>

#include <cstddef>
#include <cstdint>

namespace Tarvik::Conversion
{

struct SourceImage
{
    const uint8_t* data;
    size_t stride;
    // Bytes of one plane of a planar type; 0 otherwise.
    size_t planeSize;
    uint32_t width;
    uint32_t height;
    SourceFormat format;

    const uint8_t* Row(uint32_t y, uint32_t plane = 0) const { return data + plane * planeSize + y * stride; }
};

enum class TargetKind : uint8_t
{
    Mono8,
    Mono16,
    RGB8,
    RGB16,
    BGRa8,
};

struct TargetImage
{
    uint8_t* data;
    size_t stride;
    uint32_t width;
    uint32_t height;
    TargetKind kind;

    uint8_t* Row(uint32_t y) const { return data + y * stride; }
};

inline uint32_t TargetDepth(TargetKind kind)
{
    return kind == TargetKind::Mono16 || kind == TargetKind::RGB16 ? 16 : 8;
}

inline bool IsMonoTarget(TargetKind kind)
{
    return kind == TargetKind::Mono8 || kind == TargetKind::Mono16;
}

} // namespace Tarvik::Conversion
