#include <AnythingToNodeMapAdapter/FloatParameterPortBase.h>

namespace AnythingToNodeMapAdapter
{

FloatParameterPortBase::FloatParameterPortBase(
    const GenICam::gcstring& name, const GenICam::gcstring& displayName, const GenICam::gcstring& toolTip,
    const GenICam::gcstring& description, const GenICam::gcstring& visibility, bool available, bool writable,
    bool availableDynamic, bool writableDynamic, double min, double max,
    const GenICam::gcstring& representation, const GenICam::gcstring& unit)
    : BasicDataParameterPort<IFloatParameterPort>(name, displayName, toolTip, description, visibility,
                                                  available, writable, availableDynamic, writableDynamic)
    , m_min(min)
    , m_max(max)
    , m_representation(representation)
    , m_unit(unit)
{
}

} // namespace AnythingToNodeMapAdapter
