// The base of the host's own nodes (its frame source and its display): what every
// node must answer, answered once. `Self` is the node's class, registered with
// the type registry under a name of the host.
//
// A host node runs on the graph's thread (isSynchronous) and has no parameters
// to save: it is set up by its graph file.
#pragma once

#include <TarvikDataProcessingCore/core/AdvancedNode.h>

template <typename Self>
class HostNode : public Tarvik::DataProcessing::Core::AdvancedNode
{
public:
    using AdvancedNode::AdvancedNode;

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Tarvik::DataProcessing::Utils::TypeInfo::get<Self>(mustExist);
    }
    const void* getRawPointer() const override { return static_cast<const Self*>(this); }
    void* getRawPointer() override { return static_cast<Self*>(this); }
    bool isSynchronous() const override { return true; }
    void load(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>&) override {}
    void save(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>&) override {}
};
