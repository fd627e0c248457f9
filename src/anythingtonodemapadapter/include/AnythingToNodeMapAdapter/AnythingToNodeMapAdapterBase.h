// The half of the adapter that needs no GenICam runtime: it collects a node's parameter
// ports, with their relations, and prints the register description they make.
//
// Not thread-safe: a node fills it in its constructor, before anyone else sees it.
#pragma once

#include <AnythingToNodeMapAdapter/ParameterPortInterfaces.h>

#include <GCBase/GCString.h>

#include <cstdint>
#include <memory>

namespace AnythingToNodeMapAdapter
{

class CAnythingToNodeMapAdapterBase
{
public:
    // The port table and the document writer; lives apart from what a node includes.
    class CAnythingToNodeMapAdapterBaseImpl;

    virtual ~CAnythingToNodeMapAdapterBase();

    CAnythingToNodeMapAdapterBase(const CAnythingToNodeMapAdapterBase&) = delete;
    CAnythingToNodeMapAdapterBase& operator=(const CAnythingToNodeMapAdapterBase&) = delete;

    // The register description alone, with every register on the shared port portName;
    // ports and node map stay as they are. An empty portName gives the layout with a
    // port of its own per parameter, exactly as the node map is built from it.
    virtual void getRegisterDescription(GenICam::gcstring& text, const GenICam::gcstring& portName,
                                        const GenICam::gcstring& prefix) const;

    // Publishes port under its name, with a merge priority of which only the sign counts.
    // A null port is ignored; a port under a taken name replaces the former one.
    void addParameterPort(std::shared_ptr<ICategoryParameterPort> port, int32_t mergePriority);
    void addParameterPort(std::shared_ptr<IBooleanParameterPort> port, int32_t mergePriority);
    void addParameterPort(std::shared_ptr<IIntegerParameterPort> port, int32_t mergePriority);
    void addParameterPort(std::shared_ptr<IFloatParameterPort> port, int32_t mergePriority);

    // Appends value to the relation key of the port owner, for example
    // addRelation("Feature", "Root", "Enable"). An unknown owner is ignored.
    void addRelation(const GenICam::gcstring& key, const GenICam::gcstring& owner,
                     const GenICam::gcstring& value);

protected:
    // impl is not owned; the derived adapter owns it and outlives every call.
    explicit CAnythingToNodeMapAdapterBase(CAnythingToNodeMapAdapterBaseImpl* impl);

private:
    CAnythingToNodeMapAdapterBaseImpl* m_impl;
};

} // namespace AnythingToNodeMapAdapter
