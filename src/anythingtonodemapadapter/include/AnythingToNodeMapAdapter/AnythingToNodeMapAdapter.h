// What a node holds to publish its parameters as a GenICam node map: it collects the
// node's parameter ports, has the GenICam runtime build a node map from their register
// description, and serves that map's registers from the ports.
//
//     adapter.addParameterPort(std::make_shared<CategoryParameterPort>("Root"), 0);
//     adapter.addParameterPort(enablePort, 0);
//     adapter.addRelation("Feature", "Root", "Enable");
//     adapter.createNodeMap(&lock, "", "");
//     GenApi::INodeMap* nodeMap = adapter.getNodeMap();
//
// Not thread-safe by itself: a node builds it in its constructor. Afterwards the node
// map guards every access with the lock given to createNodeMap, the node's lock.
#pragma once

#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapterBase.h>

#include <GCBase/Synch.h>
#include <GenApi/INodeMap.h>
#include <GenApi/NodeMapRef.h>

#include <memory>

namespace AnythingToNodeMapAdapter
{

class CAnythingToNodeMapAdapter : public CAnythingToNodeMapAdapterBase
{
public:
    // The node maps and the real ports; lives apart from what a node includes.
    class CAnythingToNodeMapAdapterImpl;

    CAnythingToNodeMapAdapter();
    ~CAnythingToNodeMapAdapter() override;

    // Prints the description of all ports added so far, builds a node map from it
    // guarded by lock (a lock of the map's own if null), and wires the ports to it.
    // An empty portName gives each parameter a Port node of its own; otherwise all
    // registers lie on the one Port node portName. prefix goes before register and
    // port names. A second call rebuilds everything on a new map. A description the
    // runtime refuses raises its GenICam exception and leaves the former map in place.
    // The result holds no map; the map is reached through getNodeMap().
    GenApi::CNodeMapRef createNodeMap(GenApi::CLock* lock, const GenICam::gcstring& portName,
                                      const GenICam::gcstring& prefix);

    // The generated map, or a map without nodes before createNodeMap has succeeded;
    // never null. Valid while the adapter lives and no later createNodeMap replaced it.
    GenApi::INodeMap* getNodeMap() const;

private:
    explicit CAnythingToNodeMapAdapter(std::unique_ptr<CAnythingToNodeMapAdapterImpl> impl);

    std::unique_ptr<CAnythingToNodeMapAdapterImpl> m_impl;
};

} // namespace AnythingToNodeMapAdapter
