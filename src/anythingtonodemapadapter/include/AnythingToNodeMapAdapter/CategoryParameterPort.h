// A port that groups others; its members are named by the relation "Feature" in the
// adapter. Every node's "Root" is one of these.
#pragma once

#include <AnythingToNodeMapAdapter/BasicParameterPort.h>

namespace AnythingToNodeMapAdapter
{

class CategoryParameterPort : public BasicParameterPort<ICategoryParameterPort>
{
public:
    // All other texts empty, visibility "Expert".
    explicit CategoryParameterPort(const char* name);
    CategoryParameterPort(const GenICam::gcstring& name, const GenICam::gcstring& displayName,
                          const GenICam::gcstring& toolTip, const GenICam::gcstring& description,
                          const GenICam::gcstring& visibility);

    // A category carries no value.
    std::size_t getValueSize() const override { return 0; }
};

} // namespace AnythingToNodeMapAdapter
