// The real port that a node-map port is connected to, seen from the node-map port: the
// way a change of a parameter reaches the node map, and the way in and out of the wiring.
#pragma once

namespace AnythingToNodeMapAdapter::Detail
{

class CBasicNodeMapPort;

class CNodeMapPortConnector
{
public:
    virtual ~CNodeMapPortConnector() = default;

    // The parameter behind port changed: invalidate what the node map knows of it.
    virtual void onPortChanged(CBasicNodeMapPort* port) = 0;
    virtual void connect(CBasicNodeMapPort* port) = 0;
    virtual void disconnect(CBasicNodeMapPort* port) = 0;
};

} // namespace AnythingToNodeMapAdapter::Detail
