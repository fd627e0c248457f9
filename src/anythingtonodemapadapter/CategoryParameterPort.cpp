#include <AnythingToNodeMapAdapter/CategoryParameterPort.h>

namespace AnythingToNodeMapAdapter
{

CategoryParameterPort::CategoryParameterPort(const char* name)
    : BasicParameterPort<ICategoryParameterPort>(name, "", "", "", "Expert")
{
}

CategoryParameterPort::CategoryParameterPort(const GenICam::gcstring& name,
                                             const GenICam::gcstring& displayName,
                                             const GenICam::gcstring& toolTip,
                                             const GenICam::gcstring& description,
                                             const GenICam::gcstring& visibility)
    : BasicParameterPort<ICategoryParameterPort>(name, displayName, toolTip, description, visibility)
{
}

} // namespace AnythingToNodeMapAdapter
