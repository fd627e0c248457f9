#include <AnythingToNodeMapAdapter/IntegerParameterPortBase.h>

namespace AnythingToNodeMapAdapter
{

IntegerParameterPortBase::IntegerParameterPortBase(
    const GenICam::gcstring& name, const GenICam::gcstring& displayName, const GenICam::gcstring& toolTip,
    const GenICam::gcstring& description, const GenICam::gcstring& visibility, bool available, bool writable,
    bool availableDynamic, bool writableDynamic, int64_t min, int64_t max, int64_t inc,
    const GenICam::gcstring& representation, const GenICam::gcstring& unit)
    : BasicDataParameterPort<IIntegerParameterPort>(name, displayName, toolTip, description, visibility,
                                                    available, writable, availableDynamic, writableDynamic)
    , m_min(min)
    , m_max(max)
    , m_inc(inc)
    , m_representation(representation)
    , m_unit(unit)
{
}

} // namespace AnythingToNodeMapAdapter
