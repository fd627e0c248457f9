// An integer parameter served by a node's getter and setter of the node's own integer
// type T. Values cross the interface as signed 64-bit numbers; a T narrower than that
// takes what static_cast makes of them, since the node map already holds the value to
// the published limits.
#pragma once

#include <AnythingToNodeMapAdapter/IntegerParameterPortBase.h>
#include <AnythingToNodeMapAdapter/RelayValueAccess.h>

#include <type_traits>

namespace AnythingToNodeMapAdapter
{

template <typename T, typename N, T (N::*getter)() const, void (N::*setter)(T)>
class IntegerParameterPortRelay : public IntegerParameterPortBase
{
    static_assert(std::is_integral_v<T> && sizeof(T) <= sizeof(int64_t),
                  "T must be an integer of 64 bits at most");

public:
    // node is not owned and must outlive every use of the port.
    IntegerParameterPortRelay(N* node, const GenICam::gcstring& name, const GenICam::gcstring& displayName,
                              const GenICam::gcstring& toolTip, const GenICam::gcstring& description,
                              const GenICam::gcstring& visibility, bool available, bool writable,
                              bool availableDynamic, bool writableDynamic, int64_t min, int64_t max,
                              int64_t inc, const GenICam::gcstring& representation,
                              const GenICam::gcstring& unit = "")
        : IntegerParameterPortBase(name, displayName, toolTip, description, visibility, available, writable,
                                   availableDynamic, writableDynamic, min, max, inc, representation, unit)
        , m_node(node)
    {
    }

    std::size_t getValueSize() const override { return sizeof(T); }
    bool isSigned() const override { return std::is_signed_v<T>; }
    int64_t getValue() const override { return static_cast<int64_t>((m_node->*getter)()); }
    void setValue(int64_t value, bool silent) override
    {
        setValueThroughNode<getter, setter>(*this, *m_node, static_cast<T>(value), silent);
    }

private:
    N* m_node;
};

} // namespace AnythingToNodeMapAdapter
