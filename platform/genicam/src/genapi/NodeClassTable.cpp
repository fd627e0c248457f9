#include "NodeClassTable.h"

#include "BooleanNode.h"
#include "CategoryNode.h"
#include "EnumEntryNode.h"
#include "EnumerationNode.h"
#include "FloatRegNode.h"
#include "IntRegNode.h"
#include "NodeMap.h"
#include "NumberFeature.h"
#include "PortNode.h"

namespace GenApi::Detail
{

namespace
{

template <class Node>
std::unique_ptr<CNode> Make(CNodeMap& map, const GenICam::gcstring& name, pugi::xml_node /*element*/)
{
    return std::make_unique<Node>(map, name);
}

std::unique_ptr<CNode> MakeEnumEntry(CNodeMap& map, const GenICam::gcstring& name, pugi::xml_node element)
{
    return std::make_unique<CEnumEntryNode>(map, name, element.attribute("Name").value());
}

constexpr SNodeClass nodeClasses[] = {
    {"Category", false, &Make<CCategoryNode>},
    {"Integer", false, &Make<CIntegerNode>},
    {"IntReg", false, &Make<CIntRegNode>},
    {"Boolean", false, &Make<CBooleanNode>},
    {"Enumeration", false, &Make<CEnumerationNode>},
    {"EnumEntry", true, &MakeEnumEntry},
    {"Float", false, &Make<CFloatNode>},
    {"FloatReg", false, &Make<CFloatRegNode>},
    {"Port", false, &Make<CPortNode>},
};

} // namespace

const SNodeClass* FindNodeClass(std::string_view element)
{
    for (const SNodeClass& nodeClass : nodeClasses)
        if (element == nodeClass.element)
            return &nodeClass;
    return nullptr;
}

} // namespace GenApi::Detail
