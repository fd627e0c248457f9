// Enumerations and list types shared by all GenApi interfaces. The numeric
// values are those of the published runtime, so that callers may pass them as
// plain numbers (RW is 4, Invisible is 3).
#pragma once

#include <GCBase/GCString.h>

#include <cstdint>
#include <vector>

namespace GenApi
{

class INode;
class IValue;

enum EAccessMode
{
    NI = 0, // not implemented
    NA = 1, // not available
    WO = 2, // write only
    RO = 3, // read only
    RW = 4, // read and write
    _UndefinedAccesMode = 5,
    _CycleDetectAccesMode = 6
};

enum EVisibility
{
    Beginner = 0,
    Expert = 1,
    Guru = 2,
    Invisible = 3,
    _UndefinedVisibility = 99
};

enum ECachingMode
{
    NoCache = 0,
    WriteThrough = 1,
    WriteAround = 2,
    _UndefinedCachingMode = 3
};

enum ERepresentation
{
    Linear = 0,
    Logarithmic = 1,
    Boolean = 2,
    PureNumber = 3,
    HexNumber = 4,
    IPV4Address = 5,
    MACAddress = 6,
    _UndefinedRepresentation = 7
};

enum EEndianess
{
    BigEndian = 0,
    LittleEndian = 1,
    _UndefinedEndian = 2
};

enum ESign
{
    Signed = 0,
    Unsigned = 1,
    _UndefinedSign = 2
};

enum EYesNo
{
    No = 0,
    Yes = 1,
    _UndefinedYesNo = 2
};

enum EIncMode
{
    noIncrement = 0,
    fixedIncrement = 1,
    listIncrement = 2
};

enum EDisplayNotation
{
    fnAutomatic = 0,
    fnFixed = 1,
    fnScientific = 2,
    _UndefinedEDisplayNotation = 3
};

enum EInterfaceType
{
    intfIValue = 0,
    intfIBase = 1,
    intfIInteger = 2,
    intfIBoolean = 3,
    intfICommand = 4,
    intfIFloat = 5,
    intfIString = 6,
    intfIRegister = 7,
    intfICategory = 8,
    intfIEnumeration = 9,
    intfIEnumEntry = 10,
    intfIPort = 11
};

// Which relation GetChildren and GetParents follow.
enum ELinkType
{
    ctParentNodes = 0,          // nodes that refer to this one in any way
    ctReadingChildren = 1,      // nodes read to compute the value
    ctWritingChildren = 2,      // nodes written when the value is written
    ctInvalidatingChildren = 3, // nodes whose change invalidates this one
    ctDependingNodes = 4,       // nodes invalidated when this one changes
    ctTerminalNodes = 5,        // the registers and ports at the end of the value chain
    ctValueChildren = 6         // the nodes of pValue
};

// When a callback runs relative to the node map's lock.
enum ECallbackType
{
    cbPostInsideLock = 1, // while the lock is still held, right after the change
    cbPostOutsideLock = 2 // after the outermost access has released the lock
};

// How the bytes handed to CNodeMapFactory are encoded.
enum EContentType_t
{
    ContentType_Xml = 0,      // plain XML text
    ContentType_ZippedXml = 1 // zipped XML; this runtime refuses it
};

// What the factory does with the XML cache. This runtime keeps no cache, so
// every value means CacheUsage_Ignore.
enum ECacheUsage_t
{
    CacheUsage_Automatic = 0,
    CacheUsage_ForceWrite = 1,
    CacheUsage_ForceRead = 2,
    CacheUsage_Ignore = 3
};

using NodeList_t = std::vector<INode*>;
using FeatureList_t = std::vector<IValue*>;
using StringList_t = std::vector<GenICam::gcstring>;

} // namespace GenApi
