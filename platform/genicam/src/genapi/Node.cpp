#include "Node.h"

#include "ElementReader.h"
#include "NodeLinker.h"
#include "NodeMap.h"

#include <GCBase/GCException.h>
#include <GenApi/AccessModeHelpers.h>

#include <algorithm>
#include <limits>

namespace GenApi::Detail
{

CNode::CNode(CNodeMap& map, GenICam::gcstring name)
    : m_map(map)
    , m_name(std::move(name))
{
}

CNode::~CNode() = default;

// --- loading ---

void CNode::Load(CElementReader& reader)
{
    const std::optional<GenICam::gcstring> toolTip = reader.Text("ToolTip");
    const std::optional<GenICam::gcstring> description = reader.Text("Description");
    const std::optional<GenICam::gcstring> displayName = reader.Text("DisplayName");
    if (!reader.SuppressStrings())
    {
        m_toolTip = toolTip.value_or("");
        m_description = description.value_or("");
        m_displayName = displayName.value_or("");
    }
    m_visibility =
        reader
            .Word<EVisibility>(
                "Visibility",
                {{"Beginner", Beginner}, {"Expert", Expert}, {"Guru", Guru}, {"Invisible", Invisible}})
            .value_or(Beginner);
    m_streamable = reader.Word<bool>("Streamable", {{"Yes", true}, {"No", false}}).value_or(false);
    // Read so that they are known elements; this runtime gives them no meaning.
    reader.Text("DocuURL");
    reader.Word<bool>("IsDeprecated", {{"Yes", true}, {"No", false}});
    reader.Text("EventID");
    reader.References("pError");
    reader.Reference("pAlias");
    reader.Reference("pCastAlias");
    reader.Reference("pBlockPolling");

    m_isAvailableName = reader.Reference("pIsAvailable");
    m_isLockedName = reader.Reference("pIsLocked");
    m_invalidatorNames = reader.References("pInvalidator");
    m_selectedNames = reader.References("pSelected");
}

void CNode::Link(CNodeLinker& linker)
{
    if (m_isAvailableName)
        m_isAvailable = linker.Numeric(*this, "pIsAvailable", *m_isAvailableName);
    if (m_isLockedName)
        m_isLocked = linker.Numeric(*this, "pIsLocked", *m_isLockedName);
    m_invalidators = linker.Nodes(*this, "pInvalidator", m_invalidatorNames);
    m_selected = linker.Nodes(*this, "pSelected", m_selectedNames);
}

void CNode::CollectReads(std::vector<CNode*>& reads) const
{
    for (CNode* node : {m_isAvailable, m_isLocked})
        if (node != nullptr)
            reads.push_back(node);
}

// --- access mode ---

bool CNode::Condition(const CNode* node, bool whenUnreadable)
{
    // The read checks the node's access mode itself; asking first would ask twice.
    try
    {
        return node->ReadInteger() != 0;
    }
    catch (const GenICam::AccessException&)
    {
        return whenUnreadable;
    }
}

EAccessMode CNode::AccessMode(EIntent intent) const
{
    if (m_isAvailable != nullptr && !Condition(m_isAvailable, false))
        return NA;
    EAccessMode mode = OwnAccessMode(intent);
    // A lock that cannot be read counts as set: writing is refused rather than risked.
    if (intent != EIntent::Read && m_isLocked != nullptr && IsWritable(mode) && Condition(m_isLocked, true))
        mode = mode == RW ? RO : NA;
    return mode;
}

void CNode::RequireReadable() const
{
    if (!IsReadable(AccessMode(EIntent::Read)))
        FailAccess(false);
}

void CNode::RequireWritable() const
{
    if (!IsWritable(AccessMode(EIntent::Write)))
        FailAccess(true);
}

GenICam::gcstring CNode::DenialDetail() const
{
    const CNode* child = ValueChild();
    return child != nullptr ? child->DenialDetail() : GenICam::gcstring();
}

void CNode::FailAccess(bool writing) const
{
    const char* verb = writing ? "written" : "read";
    if (m_isAvailable != nullptr && !Condition(m_isAvailable, false))
        throw ACCESS_EXCEPTION("[%s] cannot be %s: it is not available", m_name.c_str(), verb);
    const EAccessMode own = OwnAccessMode(writing ? EIntent::Write : EIntent::Read);
    if (writing && IsWritable(own) && m_isLocked != nullptr && Condition(m_isLocked, true))
        throw ACCESS_EXCEPTION("[%s] cannot be written: it is locked", m_name.c_str());
    // Only the node's own mode is left to deny the access.
    const char* reason = own == NI   ? "it is not implemented"
                         : own == NA ? "it is not available"
                         : writing   ? "it is read-only"
                                     : "it is write-only";
    const GenICam::gcstring detail = DenialDetail();
    if (detail.empty())
        throw ACCESS_EXCEPTION("[%s] cannot be %s: %s", m_name.c_str(), verb, reason);
    throw ACCESS_EXCEPTION("[%s] cannot be %s: %s (%s)", m_name.c_str(), verb, reason, detail.c_str());
}

// --- numeric defaults: only numeric nodes are ever asked ---

int64_t CNode::ReadInteger() const
{
    throw LOGICAL_ERROR_EXCEPTION("[%s] has no numeric value", m_name.c_str());
}

void CNode::WriteInteger(int64_t /*value*/, bool /*verify*/)
{
    throw LOGICAL_ERROR_EXCEPTION("[%s] has no numeric value", m_name.c_str());
}

double CNode::ReadFloat() const
{
    throw LOGICAL_ERROR_EXCEPTION("[%s] has no numeric value", m_name.c_str());
}

void CNode::WriteFloat(double /*value*/, bool /*verify*/)
{
    throw LOGICAL_ERROR_EXCEPTION("[%s] has no numeric value", m_name.c_str());
}

int64_t CNode::IntegerMin() const
{
    return std::numeric_limits<int64_t>::min();
}
int64_t CNode::IntegerMax() const
{
    return std::numeric_limits<int64_t>::max();
}
double CNode::FloatMin() const
{
    return std::numeric_limits<double>::lowest();
}
double CNode::FloatMax() const
{
    return std::numeric_limits<double>::max();
}

ECachingMode CNode::CachingMode() const
{
    const CNode* child = ValueChild();
    return child != nullptr ? child->CachingMode() : NoCache;
}

bool CNode::CacheValid() const
{
    const CNode* child = ValueChild();
    return child != nullptr && child->CacheValid();
}

// --- INode ---

EAccessMode CNode::GetAccessMode() const
{
    return m_map.Access([&] { return AccessMode(EIntent::Query); });
}

GenICam::gcstring CNode::GetName(bool /*FullQualified*/) const
{
    return m_name;
}

GenICam::gcstring CNode::GetToolTip() const
{
    return m_map.Access([&] { return m_toolTip; });
}

GenICam::gcstring CNode::GetDescription() const
{
    return m_map.Access([&] { return m_description; });
}

GenICam::gcstring CNode::GetDisplayName() const
{
    return m_map.Access([&] { return m_displayName.empty() ? m_name : m_displayName; });
}

GenICam::gcstring CNode::GetDeviceName() const
{
    return m_map.GetDeviceName();
}

EVisibility CNode::GetVisibility() const
{
    return m_map.Access([&] { return m_visibility; });
}

void CNode::ImposeVisibility(EVisibility Visibility)
{
    m_map.Access(
        [&]
        {
            if (Visibility != _UndefinedVisibility && Visibility > m_visibility)
                m_visibility = Visibility;
        });
}

void CNode::InvalidateNode()
{
    m_map.Access([&] { m_map.ScheduleInvalidation(this); });
}

bool CNode::IsCachable() const
{
    return m_map.Access([&] { return CachingMode() != NoCache; });
}

ECachingMode CNode::GetCachingMode() const
{
    return m_map.Access([&] { return CachingMode(); });
}

bool CNode::IsStreamable() const
{
    return m_map.Access([&] { return m_streamable; });
}

bool CNode::IsFeature() const
{
    return m_map.Access([&] { return m_isFeature; });
}

bool CNode::IsSelector() const
{
    return m_map.Access([&] { return !m_selected.empty(); });
}

namespace
{

void AppendValues(const std::vector<CNode*>& nodes, FeatureList_t& features)
{
    features.clear();
    for (CNode* node : nodes)
        if (IValue* value = dynamic_cast<IValue*>(node))
            features.push_back(value);
}

} // namespace

void CNode::GetSelectedFeatures(FeatureList_t& Features) const
{
    m_map.Access([&] { AppendValues(m_selected, Features); });
}

void CNode::GetSelectingFeatures(FeatureList_t& Features) const
{
    m_map.Access([&] { AppendValues(m_selecting, Features); });
}

void CNode::CollectDepending(NodeList_t& nodes) const
{
    std::vector<const CNode*> reached{this};
    for (size_t next = 0; next < reached.size(); ++next)
        for (CNode* dependent : reached[next]->m_dependents)
            if (std::find(reached.begin(), reached.end(), dependent) == reached.end())
            {
                reached.push_back(dependent);
                nodes.push_back(dependent);
            }
}

void CNode::CollectTerminals(NodeList_t& nodes) const
{
    const CNode* node = this;
    while (node->ValueChild() != nullptr)
        node = node->ValueChild();
    if (node != this)
        nodes.push_back(const_cast<CNode*>(node));
}

void CNode::GetChildren(NodeList_t& Children, ELinkType LinkType) const
{
    m_map.Access(
        [&]
        {
            Children.clear();
            switch (LinkType)
            {
            case ctReadingChildren:
            {
                std::vector<CNode*> reads;
                CollectReads(reads);
                Children.assign(reads.begin(), reads.end());
                break;
            }
            case ctWritingChildren:
            case ctValueChildren:
                if (CNode* child = ValueChild())
                    Children.push_back(child);
                break;
            case ctInvalidatingChildren:
                Children.assign(m_invalidators.begin(), m_invalidators.end());
                break;
            case ctDependingNodes:
                CollectDepending(Children);
                break;
            case ctTerminalNodes:
                CollectTerminals(Children);
                break;
            case ctParentNodes:
                Children.assign(m_parents.begin(), m_parents.end());
                break;
            }
        });
}

void CNode::GetParents(NodeList_t& Parents, ELinkType /*LinkType*/) const
{
    m_map.Access([&] { Parents.assign(m_parents.begin(), m_parents.end()); });
}

CallbackHandleType CNode::RegisterCallback(CNodeCallback* pCallback)
{
    if (pCallback == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("[%s] cannot register a null callback", m_name.c_str());
    // The node owns the callback from here on, also if the registration fails.
    std::shared_ptr<CNodeCallback> callback(pCallback, [](CNodeCallback* c) { c->Destroy(); });
    return m_map.Access(
        [&]
        {
            m_callbacks.push_back(callback);
            return reinterpret_cast<CallbackHandleType>(pCallback);
        });
}

bool CNode::DeregisterCallback(CallbackHandleType hCallback)
{
    return m_map.Access(
        [&]
        {
            const auto found =
                std::find_if(m_callbacks.begin(), m_callbacks.end(),
                             [&](const auto& callback)
                             { return reinterpret_cast<CallbackHandleType>(callback.get()) == hCallback; });
            if (found == m_callbacks.end())
                return false;
            m_callbacks.erase(found);
            return true;
        });
}

void CNode::CollectCallbacks(std::vector<std::shared_ptr<CNodeCallback>>& callbacks) const
{
    callbacks.insert(callbacks.end(), m_callbacks.begin(), m_callbacks.end());
}

INodeMap* CNode::GetNodeMap() const
{
    return &m_map;
}

// --- CValueNode ---

GenICam::gcstring CValueNode::ToString(bool Verify, bool /*IgnoreCache*/)
{
    return m_map.Access([&] { return ValueToString(Verify); });
}

void CValueNode::FromString(const GenICam::gcstring& ValueStr, bool Verify)
{
    m_map.Access([&] { ValueFromString(ValueStr, Verify); });
}

bool CValueNode::IsValueCacheValid() const
{
    return m_map.Access([&] { return CacheValid(); });
}

} // namespace GenApi::Detail
