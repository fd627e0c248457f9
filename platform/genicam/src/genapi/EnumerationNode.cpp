#include "EnumerationNode.h"

#include "ElementReader.h"
#include "NodeMap.h"
#include "Text.h"

#include <GCBase/GCException.h>

#include <cinttypes>

namespace GenApi::Detail
{

void CEnumerationNode::Load(CElementReader& reader)
{
    CValueOrPointerNode::Load(reader);
    for (pugi::xml_node element : reader.Elements("EnumEntry"))
    {
        const char* entryName = element.attribute("Name").value();
        if (!IsNodeName(entryName))
            throw PROPERTY_EXCEPTION("[%s] EnumEntry has no valid Name, but '%s'", Name().c_str(), entryName);
        CNode* entry = reader.NestedNodes().AddNestedNode(element, "EnumEntry_" + Name() + "_" +
                                                                       GenICam::gcstring(entryName));
        m_entries.push_back(dynamic_cast<CEnumEntryNode*>(entry));
    }
    if (m_entries.empty())
        throw PROPERTY_EXCEPTION("[%s] has no EnumEntry", Name().c_str());
    m_value.Load(reader, "Value", "pValue");
    if (!m_value.IsPresent())
        throw PROPERTY_EXCEPTION("[%s] has neither Value nor pValue", Name().c_str());
    reader.Integer("PollingTime"); // no polling in this runtime
}

void CEnumerationNode::Link(CNodeLinker& linker)
{
    CValueOrPointerNode::Link(linker);
    m_value.Link(linker, *this);
}

void CEnumerationNode::CollectReads(std::vector<CNode*>& reads) const
{
    CValueOrPointerNode::CollectReads(reads);
    reads.insert(reads.end(), m_entries.begin(), m_entries.end());
}

void CEnumerationNode::Verify() const
{
    for (size_t i = 0; i < m_entries.size(); ++i)
        for (size_t j = 0; j < i; ++j)
        {
            if (m_entries[i]->Symbolic() == m_entries[j]->Symbolic())
                throw PROPERTY_EXCEPTION("[%s] has two entries named '%s'", Name().c_str(),
                                         m_entries[i]->Symbolic().c_str());
            if (m_entries[i]->Value() == m_entries[j]->Value())
                throw PROPERTY_EXCEPTION("[%s] entries '%s' and '%s' have the same value %" PRId64,
                                         Name().c_str(), m_entries[j]->Symbolic().c_str(),
                                         m_entries[i]->Symbolic().c_str(), m_entries[i]->Value());
        }
}

CEnumEntryNode* CEnumerationNode::EntryBySymbolic(const GenICam::gcstring& symbolic) const
{
    for (CEnumEntryNode* entry : m_entries)
        if (entry->Symbolic() == symbolic)
            return entry;
    return nullptr;
}

CEnumEntryNode* CEnumerationNode::EntryByValue(int64_t value) const
{
    for (CEnumEntryNode* entry : m_entries)
        if (entry->Value() == value)
            return entry;
    return nullptr;
}

int64_t CEnumerationNode::Read(bool verify) const
{
    RequireReadable();
    const int64_t value = m_value.Get();
    if (verify && EntryByValue(value) == nullptr)
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %" PRId64 " is the value of no entry", Name().c_str(),
                                     value);
    return value;
}

void CEnumerationNode::WriteNumber(int64_t value, bool verify)
{
    RequireWritable();
    if (verify)
    {
        const CEnumEntryNode* entry = EntryByValue(value);
        if (entry == nullptr)
            throw OUT_OF_RANGE_EXCEPTION("[%s] value %" PRId64 " is the value of no entry", Name().c_str(),
                                         value);
        if (!entry->IsAvailableNow())
            throw ACCESS_EXCEPTION("[%s] entry '%s' is not available", Name().c_str(),
                                   entry->Symbolic().c_str());
    }
    m_value.Set(value, verify);
    m_map.ScheduleInvalidation(this);
}

void CEnumerationNode::GetSymbolics(StringList_t& Symbolics)
{
    m_map.Access(
        [&]
        {
            Symbolics.clear();
            for (const CEnumEntryNode* entry : m_entries)
                if (entry->IsAvailableNow())
                    Symbolics.push_back(entry->Symbolic());
        });
}

void CEnumerationNode::GetEntries(NodeList_t& Entries)
{
    m_map.Access([&] { Entries.assign(m_entries.begin(), m_entries.end()); });
}

void CEnumerationNode::SetIntValue(int64_t Value, bool Verify)
{
    m_map.Access([&] { WriteNumber(Value, Verify); });
}

int64_t CEnumerationNode::GetIntValue(bool Verify, bool /*IgnoreCache*/)
{
    return m_map.Access([&] { return Read(Verify); });
}

IEnumEntry* CEnumerationNode::GetEntryByName(const GenICam::gcstring& Symbolic)
{
    return m_map.Access([&]() -> IEnumEntry* { return EntryBySymbolic(Symbolic); });
}

IEnumEntry* CEnumerationNode::GetEntry(int64_t IntValue)
{
    return m_map.Access([&]() -> IEnumEntry* { return EntryByValue(IntValue); });
}

IEnumEntry* CEnumerationNode::GetCurrentEntry(bool Verify, bool /*IgnoreCache*/)
{
    return m_map.Access([&]() -> IEnumEntry* { return EntryByValue(Read(Verify)); });
}

GenICam::gcstring CEnumerationNode::ValueToString(bool verify)
{
    const int64_t value = Read(verify);
    const CEnumEntryNode* entry = EntryByValue(value);
    if (entry == nullptr)
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %" PRId64 " is the value of no entry", Name().c_str(),
                                     value);
    return entry->Symbolic();
}

void CEnumerationNode::ValueFromString(const GenICam::gcstring& text, bool verify)
{
    const CEnumEntryNode* entry = EntryBySymbolic(text);
    if (entry == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("[%s] has no entry '%s'", Name().c_str(), text.c_str());
    WriteNumber(entry->Value(), verify);
}

} // namespace GenApi::Detail
