// GenApi::CNodeMapRef: a counted reference to a node map. Copies share the map;
// the last reference destroys it through IDestroy::Destroy. A reference keeps
// the device name beside the pointer. Using a reference without a map raises
// AccessException "Feature not present (reference not valid)".
//
// The count is atomic, so copies may live on different threads; one reference
// object itself belongs to one thread at a time.
#pragma once

#include <GCBase/GCException.h>
#include <GCBase/GCString.h>
#include <GenApi/IDestroy.h>
#include <GenApi/INode.h>
#include <GenApi/INodeMap.h>
#include <GenApi/NodeMapFactory.h>
#include <GenApi/Types.h>

#include <atomic>
#include <cstdint>

namespace GenApi
{

class IPort;

// What a camera-specific reference would generate members from; the generic one has none.
class CGeneric_XMLLoaderParams
{
public:
    virtual ~CGeneric_XMLLoaderParams() = default;

protected:
    virtual void _Initialize(INodeMap* /*pNodeMap*/) {}
};

template <class TCameraParams>
class CNodeMapRefT : public TCameraParams
{
public:
    CNodeMapRefT(const GenICam::gcstring& DeviceName = "Device")
        : _Ptr(nullptr)
        , _DeviceName(DeviceName)
    {
    }
    CNodeMapRefT(INodeMap* pNodeMap, const GenICam::gcstring& DeviceName = "Device")
        : _Ptr(nullptr)
        , _DeviceName(DeviceName)
    {
        Attach(pNodeMap);
    }
    CNodeMapRefT(const CNodeMapRefT& Them)
        : TCameraParams(Them)
        , _Ptr(Them._Ptr)
        , _DeviceName(Them._DeviceName)
        , _pRefCount(Them._pRefCount)
    {
        if (_pRefCount != nullptr)
            _pRefCount->fetch_add(1, std::memory_order_relaxed);
    }
    CNodeMapRefT& operator=(const CNodeMapRefT& Them)
    {
        if (this != &Them)
        {
            if (Them._pRefCount != nullptr)
                Them._pRefCount->fetch_add(1, std::memory_order_relaxed);
            Release();
            _Ptr = Them._Ptr;
            _pRefCount = Them._pRefCount;
            _DeviceName = Them._DeviceName;
            if (_Ptr != nullptr)
                this->_Initialize(_Ptr);
        }
        return *this;
    }
    // Attaches a map that nobody else references yet; this reference then owns it.
    CNodeMapRefT& operator=(INodeMap* pNodeMap)
    {
        Release();
        Attach(pNodeMap);
        return *this;
    }
    ~CNodeMapRefT() override { Release(); }

    // Drops this reference's share; the map goes if it was the last.
    void _Destroy() { Release(); }

    GenICam::gcstring _GetDeviceName() const { return _DeviceName; }
    void _Poll(int64_t ElapsedTime) const { Map()->Poll(ElapsedTime); }
    void _GetNodes(NodeList_t& Nodes) const { Map()->GetNodes(Nodes); }
    INode* _GetNode(const GenICam::gcstring& Name) const { return Map()->GetNode(Name); }
    void _InvalidateNodes() const { Map()->InvalidateNodes(); }
    bool _Connect(IPort* pPort, const GenICam::gcstring& PortName) const
    {
        return Map()->Connect(pPort, PortName);
    }
    bool _Connect(IPort* pPort) const { return Map()->Connect(pPort); }

    // The referenced map, or null.
    INodeMap* _Ptr;

private:
    INodeMap* Map() const
    {
        if (_Ptr == nullptr)
            throw ACCESS_EXCEPTION("Feature not present (reference not valid)");
        return _Ptr;
    }

    void Attach(INodeMap* pNodeMap)
    {
        if (pNodeMap == nullptr)
            return;
        _pRefCount = new std::atomic<int>(1);
        _Ptr = pNodeMap;
        _DeviceName = pNodeMap->GetDeviceName();
        this->_Initialize(_Ptr);
    }

    void Release()
    {
        if (_pRefCount != nullptr && _pRefCount->fetch_sub(1, std::memory_order_acq_rel) == 1)
        {
            delete _pRefCount;
            if (IDestroy* destroy = dynamic_cast<IDestroy*>(_Ptr))
                destroy->Destroy();
        }
        _Ptr = nullptr;
        _pRefCount = nullptr;
    }

    GenICam::gcstring _DeviceName;
    std::atomic<int>* _pRefCount = nullptr;
};

using CNodeMapRef = CNodeMapRefT<CGeneric_XMLLoaderParams>;

} // namespace GenApi
