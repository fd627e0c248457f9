// A boolean parameter served by a node's getter and setter. Nothing is cached: every
// read calls the getter, which takes the node's lock itself.
#pragma once

#include <AnythingToNodeMapAdapter/BasicDataParameterPort.h>
#include <AnythingToNodeMapAdapter/RelayValueAccess.h>

namespace AnythingToNodeMapAdapter
{

template <typename N, bool (N::*getter)() const, void (N::*setter)(bool)>
class BooleanParameterPortRelay : public BasicDataParameterPort<IBooleanParameterPort>
{
public:
    // node is not owned and must outlive every use of the port.
    BooleanParameterPortRelay(N* node, const GenICam::gcstring& name, const GenICam::gcstring& displayName,
                              const GenICam::gcstring& toolTip, const GenICam::gcstring& description,
                              const GenICam::gcstring& visibility, bool available, bool writable,
                              bool availableDynamic, bool writableDynamic)
        : BasicDataParameterPort<IBooleanParameterPort>(name, displayName, toolTip, description, visibility,
                                                        available, writable, availableDynamic,
                                                        writableDynamic)
        , m_node(node)
    {
    }

    std::size_t getValueSize() const override { return sizeof(bool); }
    bool getValue() const override { return (m_node->*getter)(); }
    void setValue(bool value, bool silent) override
    {
        setValueThroughNode<getter, setter>(*this, *m_node, value, silent);
    }

private:
    N* m_node;
};

} // namespace AnythingToNodeMapAdapter
