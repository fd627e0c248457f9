// The unit and display elements of number features: integer features
// (Integer, IntReg) have a unit and a representation, float features (Float,
// FloatReg) a notation and precision besides.
#pragma once

#include <GCBase/GCString.h>
#include <GenApi/Types.h>

#include <cstdint>

namespace GenApi::Detail
{

class CElementReader;

struct SIntegerDisplay
{
    GenICam::gcstring unit;
    ERepresentation representation = PureNumber;
};
SIntegerDisplay ReadIntegerDisplay(CElementReader& reader);

struct SFloatDisplay
{
    GenICam::gcstring unit;
    ERepresentation representation = PureNumber;
    EDisplayNotation displayNotation = fnAutomatic;
    int64_t displayPrecision = 6;
};
SFloatDisplay ReadFloatDisplay(CElementReader& reader);

} // namespace GenApi::Detail
