// A float parameter served by a node's getter and setter. Nothing is cached, and no
// range is checked here: the limits reach the node map through their registers.
#pragma once

#include <AnythingToNodeMapAdapter/FloatParameterPortBase.h>
#include <AnythingToNodeMapAdapter/RelayValueAccess.h>

namespace AnythingToNodeMapAdapter
{

template <typename N, double (N::*getter)() const, void (N::*setter)(double)>
class FloatParameterPortRelay : public FloatParameterPortBase
{
public:
    // node is not owned and must outlive every use of the port.
    FloatParameterPortRelay(N* node, const GenICam::gcstring& name, const GenICam::gcstring& displayName,
                            const GenICam::gcstring& toolTip, const GenICam::gcstring& description,
                            const GenICam::gcstring& visibility, bool available, bool writable,
                            bool availableDynamic, bool writableDynamic, double min, double max,
                            const GenICam::gcstring& representation = "Linear",
                            const GenICam::gcstring& unit = "")
        : FloatParameterPortBase(name, displayName, toolTip, description, visibility, available, writable,
                                 availableDynamic, writableDynamic, min, max, representation, unit)
        , m_node(node)
    {
    }

    double getValue() const override { return (m_node->*getter)(); }
    void setValue(double value, bool silent) override
    {
        setValueThroughNode<getter, setter>(*this, *m_node, value, silent);
    }

private:
    N* m_node;
};

} // namespace AnythingToNodeMapAdapter
