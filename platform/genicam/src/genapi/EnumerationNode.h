// <Enumeration>: a feature that takes the value of one of its entries; the
// value itself is a constant of the document or another node.
#pragma once

#include "EnumEntryNode.h"
#include "NumericAccess.h"
#include "ValueOrPointer.h"
#include "ValueOrPointerNode.h"

#include <GenApi/IEnumeration.h>

namespace GenApi::Detail
{

class CEnumerationNode final : public TNumericAccess<CValueOrPointerNode, int64_t>, public IEnumeration
{
public:
    using TNumericAccess::TNumericAccess;

    // IEnumeration
    void GetSymbolics(StringList_t& Symbolics) override;
    void GetEntries(NodeList_t& Entries) override;
    void SetIntValue(int64_t Value, bool Verify = true) override;
    int64_t GetIntValue(bool Verify = false, bool IgnoreCache = false) override;
    IEnumEntry* GetEntryByName(const GenICam::gcstring& Symbolic) override;
    IEnumEntry* GetEntry(int64_t IntValue) override;
    IEnumEntry* GetCurrentEntry(bool Verify = false, bool IgnoreCache = false) override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIEnumeration; }

    // CNode
    void Load(CElementReader& reader) override;
    void Link(CNodeLinker& linker) override;
    void CollectReads(std::vector<CNode*>& reads) const override;
    CNode* ValueChild() const override { return m_value.Pointer(); }
    void Verify() const override;

protected:
    int64_t ReadNumber() const override { return Read(false); }
    void WriteNumber(int64_t value, bool verify) override;
    GenICam::gcstring ValueToString(bool verify) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    CEnumEntryNode* EntryBySymbolic(const GenICam::gcstring& symbolic) const;
    CEnumEntryNode* EntryByValue(int64_t value) const;
    int64_t Read(bool verify) const;

    CValueOrPointer<int64_t> m_value;
    std::vector<CEnumEntryNode*> m_entries;
};

} // namespace GenApi::Detail
