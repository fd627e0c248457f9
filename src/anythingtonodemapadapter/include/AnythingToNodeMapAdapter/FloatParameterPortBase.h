// A float parameter port without its value: limits, representation and unit.
#pragma once

#include <AnythingToNodeMapAdapter/BasicDataParameterPort.h>

namespace AnythingToNodeMapAdapter
{

class FloatParameterPortBase : public BasicDataParameterPort<IFloatParameterPort>
{
public:
    FloatParameterPortBase() = default;
    FloatParameterPortBase(const GenICam::gcstring& name, const GenICam::gcstring& displayName,
                           const GenICam::gcstring& toolTip, const GenICam::gcstring& description,
                           const GenICam::gcstring& visibility, bool available, bool writable,
                           bool availableDynamic, bool writableDynamic, double min = 0.0, double max = 0.0,
                           const GenICam::gcstring& representation = "", const GenICam::gcstring& unit = "");

    const char* getRepresentation() const override { return m_representation.c_str(); }
    const char* getUnit() const override { return m_unit.c_str(); }
    double getMax() const override { return m_max; }
    double getMin() const override { return m_min; }
    std::size_t getValueSize() const override { return sizeof(double); }

private:
    double m_min = 0.0;
    double m_max = 0.0;
    GenICam::gcstring m_representation;
    GenICam::gcstring m_unit;
};

} // namespace AnythingToNodeMapAdapter
