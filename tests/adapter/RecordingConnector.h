// A connector that records what node-map ports tell it, in place of a real port.
#pragma once

#include "detail/NodeMapPortConnector.h"

#include <vector>

namespace AdapterTest
{

class RecordingConnector : public AnythingToNodeMapAdapter::Detail::CNodeMapPortConnector
{
public:
    using Port = AnythingToNodeMapAdapter::Detail::CBasicNodeMapPort;

    void onPortChanged(Port* port) override { changed.push_back(port); }
    void connect(Port* port) override { connected.push_back(port); }
    void disconnect(Port* port) override { disconnected.push_back(port); }

    std::vector<Port*> changed;
    std::vector<Port*> connected;
    std::vector<Port*> disconnected;
};

} // namespace AdapterTest
