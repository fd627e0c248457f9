// Callbacks on node changes. A client registers a callable on a node; the node
// runs it after the node was written or invalidated, directly or through a node
// it depends on.
//
//     CallbackHandleType handle = Register(node, [&](INode* changed) { ... });
//     Register(node, [&](INode*) { ... }, cbPostOutsideLock);
//     Deregister(handle);
//
// The node owns a registered callback and destroys it when it is deregistered
// or when the node map goes. cbPostInsideLock callbacks run while the map's
// lock is still held; cbPostOutsideLock callbacks run once the outermost access
// of the calling thread has released the lock.
#pragma once

#include <GCBase/GCException.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/INode.h>
#include <GenApi/Types.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace GenApi
{

class GENAPI_API CNodeCallback
{
public:
    CNodeCallback(INode* pNode, ECallbackType CallbackType)
        : m_pNode(pNode)
        , m_CallbackType(CallbackType)
    {
    }
    virtual ~CNodeCallback();
    CNodeCallback(const CNodeCallback&) = delete;
    CNodeCallback& operator=(const CNodeCallback&) = delete;

    // Called by the node once for each callback type; a callback reacts only to its own.
    virtual void operator()(ECallbackType CallbackType) const = 0;
    // Releases the callback; the node calls it on deregistration and at its end.
    virtual void Destroy() = 0;

    INode* GetNode() const { return m_pNode; }
    ECallbackType GetCallbackType() const { return m_CallbackType; }

protected:
    INode* m_pNode;
    ECallbackType m_CallbackType;
};

// A callback around any callable that takes the node: a function pointer or a lambda.
template <class Function>
class Function_NodeCallback final : public CNodeCallback
{
public:
    Function_NodeCallback(INode* pNode, Function function, ECallbackType CallbackType)
        : CNodeCallback(pNode, CallbackType)
        , m_function(std::move(function))
    {
    }

    void operator()(ECallbackType CallbackType) const override
    {
        if (CallbackType == m_CallbackType)
            m_function(m_pNode);
    }
    void Destroy() override { delete this; }

private:
    Function m_function;
};

// Registers a callable f(INode*) on pNode. Throws InvalidArgumentException for a null node.
template <class Function>
CallbackHandleType Register(INode* pNode, Function function, ECallbackType CallbackType = cbPostInsideLock)
{
    if (pNode == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("Cannot register a callback on a null node");
    std::unique_ptr<CNodeCallback> callback(
        new Function_NodeCallback<Function>(pNode, std::move(function), CallbackType));
    const CallbackHandleType handle = pNode->RegisterCallback(callback.get());
    callback.release(); // the node owns it now
    return handle;
}

// Removes and destroys a registered callback. The handle must still be
// registered, since its node is found through the callback itself; for a handle
// that may be stale, ask the node: INode::DeregisterCallback gives false.
inline bool Deregister(CallbackHandleType handle)
{
    if (handle == 0)
        return false;
    return reinterpret_cast<CNodeCallback*>(handle)->GetNode()->DeregisterCallback(handle);
}

} // namespace GenApi
