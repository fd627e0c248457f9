// The one party that a parameter port tells about a change of its value.
#pragma once

namespace AnythingToNodeMapAdapter
{

class IBasicParameterPort;

class IParameterPortObserver
{
public:
    // Called on the thread of the setter, with the node's lock held, only for a real change.
    virtual void onParameterPortChanged(IBasicParameterPort* port) = 0;

protected:
    // Observers are never deleted through this interface.
    ~IParameterPortObserver() = default;
};

} // namespace AnythingToNodeMapAdapter
