// The one table from element name to node class.
#pragma once

#include <GCBase/GCString.h>

#include <pugixml.hpp>

#include <memory>
#include <string_view>

namespace GenApi::Detail
{

class CNode;
class CNodeMap;

struct SNodeClass
{
    const char* element;
    // EnumEntry stands only inside an Enumeration; all others only at the top.
    bool nested;
    std::unique_ptr<CNode> (*make)(CNodeMap& map, const GenICam::gcstring& name, pugi::xml_node element);
};

// The class of that element, or null if this runtime has none.
const SNodeClass* FindNodeClass(std::string_view element);

} // namespace GenApi::Detail
