#include "NodeMap.h"

#include "PortNode.h"

#include <GCBase/GCException.h>
#include <GenApi/DocumentText.h>

namespace GenApi::Detail
{

CNodeMap::CNodeMap(CLock* userLock, GenICam::gcstring deviceName)
    : m_ownLock(userLock == nullptr ? std::make_unique<CLock>() : nullptr)
    , m_lock(userLock == nullptr ? m_ownLock.get() : userLock)
    , m_deviceName(std::move(deviceName))
{
}

CNodeMap::~CNodeMap() = default;

void CNodeMap::GetNodes(NodeList_t& Nodes) const
{
    Access(
        [&]
        {
            Nodes.clear();
            Nodes.reserve(m_nodes.size());
            for (const auto& node : m_nodes)
                Nodes.push_back(node.get());
        });
}

INode* CNodeMap::GetNode(const GenICam::gcstring& Name) const
{
    return Access([&]() -> INode* { return FindNode(Name); });
}

void CNodeMap::InvalidateNodes() const
{
    Access(
        [&]
        {
            for (const auto& node : m_nodes)
                ScheduleInvalidation(node.get());
        });
}

bool CNodeMap::Connect(IPort* pPort, const GenICam::gcstring& PortName) const
{
    return Access(
        [&]
        {
            CPortNode* portNode = dynamic_cast<CPortNode*>(FindNode(PortName));
            if (portNode == nullptr)
                return false;
            portNode->Attach(pPort);
            ScheduleInvalidation(portNode);
            return true;
        });
}

bool CNodeMap::Connect(IPort* pPort) const
{
    return Connect(pPort, "Device");
}

void CNodeMap::Poll(int64_t /*ElapsedTime*/)
{
    // No node of this runtime has a polling time.
}

uint64_t CNodeMap::GetNumNodes() const
{
    return Access([&] { return static_cast<uint64_t>(m_nodes.size()); });
}

bool CNodeMap::AddNode(std::unique_ptr<CNode> node)
{
    if (!m_nodesByName.emplace(node->Name(), node.get()).second)
        return false;
    m_nodes.push_back(std::move(node));
    return true;
}

CNode* CNodeMap::FindNode(const GenICam::gcstring& name) const
{
    const auto found = m_nodesByName.find(name);
    return found == m_nodesByName.end() ? nullptr : found->second;
}

std::exception_ptr CNodeMap::Flush() const
{
    std::exception_ptr failure;
    // Flush runs only at the end of the outermost access, so the scratch lists
    // are never in use twice; they keep their capacity from one write to the next.
    std::vector<CNode*>& reached = m_scratchNodes;
    std::vector<std::shared_ptr<CNodeCallback>>& callbacks = m_scratchCallbacks;
    while (!m_pendingInvalidations.empty())
    {
        // Every node reachable through the dependents, each once.
        const uint64_t mark = ++m_visitMark;
        reached.clear();
        for (CNode* root : m_pendingInvalidations)
        {
            if (root->VisitMark() == mark)
                continue;
            root->VisitMark() = mark;
            reached.push_back(root);
        }
        m_pendingInvalidations.clear();
        for (size_t next = 0; next < reached.size(); ++next)
        {
            for (CNode* dependent : reached[next]->Dependents())
            {
                if (dependent->VisitMark() == mark)
                    continue;
                dependent->VisitMark() = mark;
                reached.push_back(dependent);
            }
        }

        callbacks.clear();
        for (CNode* node : reached)
            node->CollectCallbacks(callbacks);
        for (const auto& callback : callbacks)
        {
            if (callback->GetCallbackType() == cbPostOutsideLock)
            {
                m_pendingOutsideCallbacks.push_back(callback);
                continue;
            }
            try
            {
                (*callback)(cbPostInsideLock);
            }
            catch (...)
            {
                if (!failure)
                    failure = std::current_exception();
            }
        }
    }
    callbacks.clear(); // a deregistered callback goes now, not at the next write
    return failure;
}

CNodeMap::CAccess::CAccess(const CNodeMap& map)
    : m_map(map)
{
    m_map.m_lock->Lock();
    ++m_map.m_depth;
}

CNodeMap::CAccess::~CAccess()
{
    if (!m_left)
        Release(false);
}

void CNodeMap::CAccess::Leave()
{
    m_left = true;
    Release(true);
}

void CNodeMap::CAccess::Release(bool passFailures)
{
    std::exception_ptr failure;
    std::vector<std::shared_ptr<CNodeCallback>> outside;
    if (m_map.m_depth == 1)
    {
        try
        {
            failure = m_map.Flush();
        }
        catch (...)
        {
            failure = std::current_exception();
        }
        outside.swap(m_map.m_pendingOutsideCallbacks);
    }
    --m_map.m_depth;
    m_map.m_lock->Unlock();

    for (const auto& callback : outside)
    {
        try
        {
            (*callback)(cbPostOutsideLock);
        }
        catch (...)
        {
            if (!failure)
                failure = std::current_exception();
        }
    }
    if (failure && passFailures)
        std::rethrow_exception(failure);
}

} // namespace GenApi::Detail

namespace GenApi
{

GenICam::gcstring GetDocumentText(const INodeMap* nodeMap)
{
    const auto* const map = dynamic_cast<const Detail::CNodeMap*>(nodeMap);
    return map ? map->DocumentText() : GenICam::gcstring();
}

} // namespace GenApi
