// An integer parameter port without its value: limits, increment, representation and unit.
#pragma once

#include <AnythingToNodeMapAdapter/BasicDataParameterPort.h>

namespace AnythingToNodeMapAdapter
{

class IntegerParameterPortBase : public BasicDataParameterPort<IIntegerParameterPort>
{
public:
    IntegerParameterPortBase() = default;
    IntegerParameterPortBase(const GenICam::gcstring& name, const GenICam::gcstring& displayName,
                             const GenICam::gcstring& toolTip, const GenICam::gcstring& description,
                             const GenICam::gcstring& visibility, bool available, bool writable,
                             bool availableDynamic, bool writableDynamic, int64_t min = 0, int64_t max = 0,
                             int64_t inc = 1, const GenICam::gcstring& representation = "",
                             const GenICam::gcstring& unit = "");

    const char* getRepresentation() const override { return m_representation.c_str(); }
    const char* getUnit() const override { return m_unit.c_str(); }
    int64_t getMax() const override { return m_max; }
    int64_t getMin() const override { return m_min; }
    int64_t getInc() const override { return m_inc; }

private:
    int64_t m_min = 0;
    int64_t m_max = 0;
    int64_t m_inc = 1;
    GenICam::gcstring m_representation;
    GenICam::gcstring m_unit;
};

} // namespace AnythingToNodeMapAdapter
