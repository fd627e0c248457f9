// Pixel type names, both ways. The names are those of the naming convention; the
// older names of the same codes ("RGB8Packed", "YUV422Packed", "Mono1packed", ...)
// are accepted when looking up by name, the current name is given back by code.
#pragma once

#include <GCBase/GCString.h>
#include <TarvikBase/PixelType.h>
#include <TarvikBase/TarvikBaseExport.h>

namespace Tarvik
{

class TARVIKBASE_API CPixelTypeMapper
{
public:
    // PixelType_Undefined for "Undefined" and for every name it does not know.
    static EPixelType GetTarvikPixelTypeByName(const GenICam::gcstring& name);

    // "Undefined" for PixelType_Undefined, an empty text for a code it does not know.
    static GenICam::gcstring GetNameByTarvikPixelType(EPixelType type);
};

} // namespace Tarvik
