// The base of every node class: the elements that all nodes share (texts,
// visibility, pIsAvailable, pIsLocked, pInvalidator, pSelected), the access mode that follows from them,
// callbacks, and the links that invalidation and cycle detection walk.
//
// Public INode operations take the map's lock; the operations of the "internal"
// section expect it held and are what nodes call on one another.
#pragma once

#include <GenApi/INode.h>
#include <GenApi/IValue.h>
#include <GenApi/NodeCallback.h>
#include <GenApi/Types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace GenApi::Detail
{

class CElementReader;
class CNodeLinker;
class CNodeMap;

// What an access mode is computed for: a query of GetAccessMode, a read, a
// write. pIsLocked is looked at only for queries and writes.
enum class EIntent
{
    Query,
    Read,
    Write
};

class CNode : public virtual INode
{
public:
    CNode(CNodeMap& map, GenICam::gcstring name);
    ~CNode() override;
    CNode(const CNode&) = delete;
    CNode& operator=(const CNode&) = delete;

    // INode and IBase, each under the map's lock.
    EAccessMode GetAccessMode() const override;
    GenICam::gcstring GetName(bool FullQualified = false) const override;
    GenICam::gcstring GetToolTip() const override;
    GenICam::gcstring GetDescription() const override;
    GenICam::gcstring GetDisplayName() const override;
    GenICam::gcstring GetDeviceName() const override;
    EVisibility GetVisibility() const override;
    void ImposeVisibility(EVisibility Visibility) override;
    void InvalidateNode() override;
    bool IsCachable() const override;
    ECachingMode GetCachingMode() const override;
    bool IsStreamable() const override;
    bool IsFeature() const override;
    bool IsSelector() const override;
    void GetSelectedFeatures(FeatureList_t& Features) const override;
    void GetSelectingFeatures(FeatureList_t& Features) const override;
    void GetChildren(NodeList_t& Children, ELinkType LinkType = ctWritingChildren) const override;
    void GetParents(NodeList_t& Parents, ELinkType LinkType = ctWritingChildren) const override;
    CallbackHandleType RegisterCallback(CNodeCallback* pCallback) override;
    bool DeregisterCallback(CallbackHandleType hCallback) override;
    INodeMap* GetNodeMap() const override;

    // --- loading, before the map is handed out ---

    // Reads the node's elements; a subclass reads its own and calls this for the shared ones.
    virtual void Load(CElementReader& reader);
    // Turns the names read by Load into nodes.
    virtual void Link(CNodeLinker& linker);
    // Adds the nodes this one reads to compute its value or access mode.
    virtual void CollectReads(std::vector<CNode*>& reads) const;
    // The pValue-like child that a write goes to, if any.
    virtual CNode* ValueChild() const { return nullptr; }
    // Checks what can be checked once all nodes are linked (constant limits and the like).
    virtual void Verify() const {}
    void AddDependent(CNode* node) { m_dependents.push_back(node); }
    void AddSelecting(CNode* node) { m_selecting.push_back(node); }
    void AddParent(CNode* node) { m_parents.push_back(node); }
    void MarkAsFeature() { m_isFeature = true; }
    const std::vector<CNode*>& Invalidators() const { return m_invalidators; }
    const std::vector<CNode*>& Selected() const { return m_selected; }

    // --- internal, under the map's lock ---

    const GenICam::gcstring& Name() const { return m_name; }
    CNodeMap& Map() const { return m_map; }
    EAccessMode AccessMode(EIntent intent) const;
    // Throw AccessException naming the node and the reason if the access is not allowed.
    void RequireReadable() const;
    void RequireWritable() const;

    // Numeric access for nodes that point at this one (pValue, pMin, pIsLocked ...).
    virtual bool IsNumeric() const { return false; }
    virtual int64_t ReadInteger() const;
    virtual void WriteInteger(int64_t value, bool verify);
    virtual double ReadFloat() const;
    virtual void WriteFloat(double value, bool verify);
    // The limits a pointing node falls back to when it has none of its own.
    virtual int64_t IntegerMin() const;
    virtual int64_t IntegerMax() const;
    virtual double FloatMin() const;
    virtual double FloatMax() const;

    // By default that of the value child: a feature reports what its register reports.
    virtual ECachingMode CachingMode() const;
    // Whether the value is known without asking a port: only a constant's is.
    virtual bool CacheValid() const;
    // Why the node's own access mode denies an access, beyond the mode itself,
    // as "port 'P' is not connected"; empty if there is nothing to add.
    virtual GenICam::gcstring DenialDetail() const;

    // Invalidation walks: the nodes to invalidate when this one changes.
    const std::vector<CNode*>& Dependents() const { return m_dependents; }
    uint64_t& VisitMark() { return m_visitMark; }
    // Appends the node's callbacks, for the map to run.
    void CollectCallbacks(std::vector<std::shared_ptr<CNodeCallback>>& callbacks) const;

protected:
    // The node's own access mode, before pIsAvailable and pIsLocked are applied.
    virtual EAccessMode OwnAccessMode(EIntent intent) const = 0;

    [[noreturn]] void FailAccess(bool writing) const;

    CNodeMap& m_map;

private:
    // Whether a condition node (pIsAvailable, pIsLocked) reads as true now.
    static bool Condition(const CNode* node, bool whenUnreadable);
    void CollectDepending(NodeList_t& nodes) const;
    void CollectTerminals(NodeList_t& nodes) const;

    GenICam::gcstring m_name;
    GenICam::gcstring m_toolTip;
    GenICam::gcstring m_description;
    GenICam::gcstring m_displayName;
    EVisibility m_visibility = Beginner;
    bool m_streamable = false;
    bool m_isFeature = false;

    std::optional<GenICam::gcstring> m_isAvailableName;
    std::optional<GenICam::gcstring> m_isLockedName;
    std::vector<GenICam::gcstring> m_invalidatorNames;
    std::vector<GenICam::gcstring> m_selectedNames;

    CNode* m_isAvailable = nullptr;
    CNode* m_isLocked = nullptr;
    std::vector<CNode*> m_invalidators;
    std::vector<CNode*> m_selected;
    std::vector<CNode*> m_selecting;
    std::vector<CNode*> m_dependents;
    std::vector<CNode*> m_parents;
    uint64_t m_visitMark = 0;

    std::vector<std::shared_ptr<CNodeCallback>> m_callbacks;
};

// A node that is also a value (everything but a Port): IValue's text
// conversions on top of typed reads and writes.
class CValueNode : public CNode, public virtual IValue
{
public:
    using CNode::CNode;

    INode* GetNode() override { return this; }
    GenICam::gcstring ToString(bool Verify = false, bool IgnoreCache = false) override;
    void FromString(const GenICam::gcstring& ValueStr, bool Verify = true) override;
    bool IsValueCacheValid() const override;

protected:
    // Under the lock.
    virtual GenICam::gcstring ValueToString(bool verify) = 0;
    virtual void ValueFromString(const GenICam::gcstring& text, bool verify) = 0;
};

} // namespace GenApi::Detail
