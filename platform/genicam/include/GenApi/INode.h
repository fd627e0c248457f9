// GenApi::INode: one node of a node map, the common face of features,
// registers, categories and ports.
#pragma once

#include <GCBase/GCString.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/IBase.h>
#include <GenApi/Types.h>

#include <cstdint>

namespace GenApi
{

class CNodeCallback;
class INodeMap;

// Identifies a registered callback; 0 is no callback.
using CallbackHandleType = intptr_t;

class GENAPI_API INode : virtual public IBase
{
public:
    ~INode() override;

    // The node's name as the document gives it. FullQualified is accepted for
    // compatibility; this runtime has no name spaces, so it changes nothing.
    virtual GenICam::gcstring GetName(bool FullQualified = false) const = 0;
    virtual EInterfaceType GetPrincipalInterfaceType() const = 0;

    virtual GenICam::gcstring GetToolTip() const = 0;
    virtual GenICam::gcstring GetDescription() const = 0;
    // The display name, or the name if the document gives none.
    virtual GenICam::gcstring GetDisplayName() const = 0;
    virtual GenICam::gcstring GetDeviceName() const = 0;

    // The document's visibility, or a stricter one imposed by the client.
    virtual EVisibility GetVisibility() const = 0;
    // Makes the node at most as visible as Visibility; a less strict value changes nothing.
    virtual void ImposeVisibility(EVisibility Visibility) = 0;

    // Forgets every cached value of this node and of all nodes that depend on
    // it, and runs their callbacks.
    virtual void InvalidateNode() = 0;
    virtual bool IsCachable() const = 0;
    virtual ECachingMode GetCachingMode() const = 0;
    virtual bool IsStreamable() const = 0;
    // True for nodes that a category lists or could list: values, not registers or ports.
    virtual bool IsFeature() const = 0;
    // True if the node has pSelected entries.
    virtual bool IsSelector() const = 0;
    virtual void GetSelectedFeatures(FeatureList_t& Features) const = 0;
    virtual void GetSelectingFeatures(FeatureList_t& Features) const = 0;

    virtual void GetChildren(NodeList_t& Children, ELinkType LinkType = ctWritingChildren) const = 0;
    virtual void GetParents(NodeList_t& Parents, ELinkType LinkType = ctWritingChildren) const = 0;

    // Takes ownership of pCallback; see NodeCallback.h for Register and Deregister.
    virtual CallbackHandleType RegisterCallback(CNodeCallback* pCallback) = 0;
    // Removes and destroys the callback; false if it is not registered on this node.
    virtual bool DeregisterCallback(CallbackHandleType hCallback) = 0;

    virtual INodeMap* GetNodeMap() const = 0;
};

} // namespace GenApi
