// The node map: owns the nodes of one document and the lock that guards them.
//
// Every public operation of the map and of its nodes runs through Access, which
// takes the lock and counts the nesting of accesses on the owning thread.
// Invalidations requested during an access are collected and carried out once,
// when the outermost access ends: for the invalidated nodes and everything
// that depends on them, the cbPostInsideLock callbacks run while the lock is
// still held, and their cbPostOutsideLock callbacks run right
// after it is released. A callback that throws does not stop the others; the
// first exception is passed on to the caller once all have run.
#pragma once

#include "Node.h"

#include <GCBase/Synch.h>
#include <GenApi/IDestroy.h>
#include <GenApi/INodeMap.h>

#include <exception>
#include <memory>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace GenApi::Detail
{

class CNodeMap final : public INodeMap, public IDestroy
{
public:
    // With userLock null the map makes a lock of its own.
    CNodeMap(CLock* userLock, GenICam::gcstring deviceName);
    ~CNodeMap() override;
    CNodeMap(const CNodeMap&) = delete;
    CNodeMap& operator=(const CNodeMap&) = delete;

    // INodeMap
    void GetNodes(NodeList_t& Nodes) const override;
    INode* GetNode(const GenICam::gcstring& Name) const override;
    void InvalidateNodes() const override;
    bool Connect(IPort* pPort, const GenICam::gcstring& PortName) const override;
    bool Connect(IPort* pPort) const override;
    GenICam::gcstring GetDeviceName() const override { return m_deviceName; }
    void Poll(int64_t ElapsedTime) override;
    CLock& GetLock() const override { return *m_lock; }
    uint64_t GetNumNodes() const override;

    // IDestroy
    void Destroy() override { delete this; }

    // Building, before the map is handed out. False if the name is taken.
    bool AddNode(std::unique_ptr<CNode> node);
    CNode* FindNode(const GenICam::gcstring& name) const;
    const std::vector<std::unique_ptr<CNode>>& Nodes() const { return m_nodes; }
    // The register description the map was built from; set once, before the map is handed out.
    void SetDocumentText(GenICam::gcstring text) { m_documentText = std::move(text); }
    const GenICam::gcstring& DocumentText() const { return m_documentText; }

    // Runs f under the lock as one access; see the class comment.
    template <class F>
    decltype(auto) Access(F&& f) const
    {
        CAccess access(*this);
        if constexpr (std::is_void_v<std::invoke_result_t<F>>)
        {
            f();
            access.Leave();
        }
        else
        {
            decltype(auto) result = f();
            access.Leave();
            return result;
        }
    }

    // Under the lock: invalidate node and its dependents when the access ends.
    void ScheduleInvalidation(CNode* node) const { m_pendingInvalidations.push_back(node); }

private:
    class CAccess
    {
    public:
        explicit CAccess(const CNodeMap& map);
        ~CAccess();
        CAccess(const CAccess&) = delete;
        CAccess& operator=(const CAccess&) = delete;
        // The normal end: carries out the pending invalidations and passes on callback failures.
        void Leave();

    private:
        void Release(bool passFailures);
        const CNodeMap& m_map;
        bool m_left = false;
    };

    // Carries out the pending invalidations; returns the first callback failure.
    std::exception_ptr Flush() const;

    std::unique_ptr<CLock> m_ownLock;
    CLock* m_lock;
    GenICam::gcstring m_deviceName;
    GenICam::gcstring m_documentText;
    std::vector<std::unique_ptr<CNode>> m_nodes;
    std::unordered_map<GenICam::gcstring, CNode*> m_nodesByName;

    // Guarded by the lock.
    mutable int m_depth = 0;
    mutable uint64_t m_visitMark = 0;
    mutable std::vector<CNode*> m_pendingInvalidations;
    mutable std::vector<std::shared_ptr<CNodeCallback>> m_pendingOutsideCallbacks;
    mutable std::vector<CNode*> m_scratchNodes;
    mutable std::vector<std::shared_ptr<CNodeCallback>> m_scratchCallbacks;
};

} // namespace GenApi::Detail
