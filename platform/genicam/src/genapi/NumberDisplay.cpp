#include "NumberDisplay.h"

#include "ElementReader.h"

#include <initializer_list>
#include <utility>

namespace GenApi::Detail
{

namespace
{

template <class Display>
Display
ReadUnitAndRepresentation(CElementReader& reader,
                          std::initializer_list<std::pair<const char*, ERepresentation>> representations)
{
    Display display;
    display.unit = reader.Text("Unit").value_or("");
    display.representation =
        reader.Word<ERepresentation>("Representation", representations).value_or(PureNumber);
    return display;
}

} // namespace

SIntegerDisplay ReadIntegerDisplay(CElementReader& reader)
{
    return ReadUnitAndRepresentation<SIntegerDisplay>(reader, {{"Linear", Linear},
                                                               {"Logarithmic", Logarithmic},
                                                               {"Boolean", Boolean},
                                                               {"PureNumber", PureNumber},
                                                               {"HexNumber", HexNumber},
                                                               {"IPV4Address", IPV4Address},
                                                               {"MACAddress", MACAddress}});
}

SFloatDisplay ReadFloatDisplay(CElementReader& reader)
{
    SFloatDisplay display = ReadUnitAndRepresentation<SFloatDisplay>(
        reader, {{"Linear", Linear}, {"Logarithmic", Logarithmic}, {"PureNumber", PureNumber}});
    display.displayNotation = reader
                                  .Word<EDisplayNotation>("DisplayNotation", {{"Automatic", fnAutomatic},
                                                                              {"Fixed", fnFixed},
                                                                              {"Scientific", fnScientific}})
                                  .value_or(fnAutomatic);
    display.displayPrecision = reader.Integer("DisplayPrecision").value_or(6);
    return display;
}

} // namespace GenApi::Detail
