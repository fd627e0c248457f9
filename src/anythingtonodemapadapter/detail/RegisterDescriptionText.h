// The pieces of the register description text that the port writers share. The text
// is fixed to the character: lines end in one line feed, indentation is four blanks per
// level, and names and texts go in byte for byte, unescaped.
#pragma once

#include <AnythingToNodeMapAdapter/ParameterPortInterfaces.h>

#include <GCBase/GCString.h>

#include <cstdint>
#include <list>
#include <ostream>

namespace AnythingToNodeMapAdapter::Detail::RegisterDescriptionText
{

using Values = std::list<GenICam::gcstring>;

// The XML declaration, the head element and the empty line after it.
void writeHead(std::ostream& stream);
// The empty line and the closing element.
void writeTail(std::ostream& stream);
// The one Port element of the shared layout.
void writeSharedPort(std::ostream& stream, const GenICam::gcstring& portName);
// The Port element of a parameter that has a port of its own.
void writeOwnPort(std::ostream& stream, const GenICam::gcstring& portName, const char* parameterName);

// Tool tip, description and display name, each only when not empty.
void writeTexts(std::ostream& stream, const IBasicParameterPort& port);
// One line "        <element>v</element>" per value, in order.
void writeValueLines(std::ostream& stream, const char* element, const Values& values);

// Everything a feature element holds up to its pValue line, from the opening line on.
struct FeatureHead
{
    const char* element;          // "Boolean", "Integer", "Float"
    int32_t mergePriority;        // only its sign is printed
    const GenICam::gcstring& reg; // prefix followed by the name
    const Values& isAvailable;    // relation values, used without an IsAvailable register
    const Values& isLocked;       // relation values, used without an IsLocked register
};
void writeFeatureHead(std::ostream& stream, const IBasicDataParameterPort& port, const FeatureHead& head);
// What a number feature holds after its pValue line: pMin, pMax, with withInc pInc, the
// unit when not empty, and the representation.
void writeNumberLines(std::ostream& stream, const GenICam::gcstring& reg, bool withInc, const char* unit,
                      const char* representation);

// One row of a port type's register table.
struct RegisterLayout
{
    enum class Presence
    {
        always,
        ifAvailableDynamic,
        ifWritableDynamic
    };
    enum class Access
    {
        readOnly,
        ofValue // "RW", or "RO" when the port is neither writable nor writable dynamically
    };
    enum class Sign
    {
        none,
        unsignedWord,
        ofPort // "Signed" or "Unsigned" as the port says
    };

    const char* element; // "IntReg" or "FloatReg"
    const char* suffix;
    int64_t offset;
    Presence presence;
    Access access;
    bool invalidators;
    Sign sign;
};

// What the registers of one port have in common.
struct RegisterContext
{
    const GenICam::gcstring& reg;
    const GenICam::gcstring& portName;
    int64_t blockAddress;
    bool isSigned;
    const Values& invalidators;
};
// The register element of layout, unless the port's dynamic flags leave that register out.
void writeRegister(std::ostream& stream, const IBasicDataParameterPort& port, const RegisterLayout& layout,
                   const RegisterContext& context);

// "0x" and the address in lower-case hexadecimal without leading zeros.
GenICam::gcstring hexAddress(int64_t address);

} // namespace AnythingToNodeMapAdapter::Detail::RegisterDescriptionText
