// A node map that records what real ports ask of it and has no nodes, so that real
// ports can be tested apart from the runtime's parser.
#pragma once

#include <GenApi/INodeMap.h>

#include <utility>
#include <vector>

namespace AdapterTest
{

class RecordingNodeMap final : public GenApi::INodeMap
{
public:
    ~RecordingNodeMap() override = default;

    void GetNodes(GenApi::NodeList_t& nodes) const override { nodes.clear(); }
    GenApi::INode* GetNode(const GenICam::gcstring& name) const override
    {
        lookedUp.push_back(name);
        return nullptr;
    }
    void InvalidateNodes() const override {}
    bool Connect(GenApi::IPort* port, const GenICam::gcstring& portName) const override
    {
        connects.emplace_back(port, portName);
        return true;
    }
    bool Connect(GenApi::IPort* port) const override { return Connect(port, "Device"); }
    GenICam::gcstring GetDeviceName() const override { return "Device"; }
    void Poll(int64_t) override {}
    GenApi::CLock& GetLock() const override { return m_lock; }
    uint64_t GetNumNodes() const override { return 0; }

    mutable std::vector<std::pair<GenApi::IPort*, GenICam::gcstring>> connects;
    mutable std::vector<GenICam::gcstring> lookedUp;

private:
    mutable GenApi::CLock m_lock;
};

} // namespace AdapterTest
