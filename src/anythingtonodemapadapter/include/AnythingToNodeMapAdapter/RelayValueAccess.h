// The value access that the three relays share: a write through the node's setter,
// told to the port's observer unless the caller asks for silence.
#pragma once

namespace AnythingToNodeMapAdapter
{

// silent true calls the setter and nothing else; the node map uses it, because the
// node's setter tells the observer by itself. silent false also compares the old value
// with the new one and notifies on a difference; for a float, a NaN on either side
// counts as a difference, which is what != gives.
template <auto getter, auto setter, typename Port, typename N, typename T>
void setValueThroughNode(Port& port, N& node, T value, bool silent)
{
    if (silent)
    {
        (node.*setter)(value);
        return;
    }
    const T old = (node.*getter)();
    (node.*setter)(value);
    if (old != value)
    {
        port.notifyObserver();
    }
}

} // namespace AnythingToNodeMapAdapter
