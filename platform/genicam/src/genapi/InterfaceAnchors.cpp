// Out-of-line destructors: they anchor the virtual tables and type information
// of the public interfaces in this library, so that every client sees one type
// identity for dynamic_cast and exceptions.
#include <GenApi/GenApi.h>

namespace GenApi
{

IBase::~IBase() = default;
INode::~INode() = default;
IValue::~IValue() = default;
IBoolean::~IBoolean() = default;
IInteger::~IInteger() = default;
IFloat::~IFloat() = default;
IEnumEntry::~IEnumEntry() = default;
IEnumeration::~IEnumeration() = default;
ICategory::~ICategory() = default;
IRegister::~IRegister() = default;
IPort::~IPort() = default;
IPortConstruct::~IPortConstruct() = default;
IPortReplay::~IPortReplay() = default;
IPortWriteList::~IPortWriteList() = default;
IDestroy::~IDestroy() = default;
INodeMap::~INodeMap() = default;
CNodeCallback::~CNodeCallback() = default;
CPortImpl::~CPortImpl() = default;

} // namespace GenApi
