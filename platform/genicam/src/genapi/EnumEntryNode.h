// <EnumEntry>: one value of an enumeration. Entries live inside their
// Enumeration element; in the map they are named "EnumEntry_<Enumeration>_<Entry>".
#pragma once

#include "Node.h"

#include <GenApi/IEnumEntry.h>

namespace GenApi::Detail
{

class CEnumEntryNode final : public CValueNode, public IEnumEntry
{
public:
    // symbolic is the entry's Name attribute.
    CEnumEntryNode(CNodeMap& map, GenICam::gcstring name, GenICam::gcstring symbolic);

    // IEnumEntry
    int64_t GetValue() const override { return m_value; }
    GenICam::gcstring GetSymbolic() const override { return m_symbolic; }
    double GetNumericValue() const override { return m_numericValue; }
    bool IsSelfClearing() const override { return m_selfClearing; }
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIEnumEntry; }

    // CNode
    void Load(CElementReader& reader) override;

    // Internal, under the lock.
    int64_t Value() const { return m_value; }
    const GenICam::gcstring& Symbolic() const { return m_symbolic; }
    bool IsAvailableNow() const;

protected:
    EAccessMode OwnAccessMode(EIntent /*intent*/) const override { return RO; }
    GenICam::gcstring ValueToString(bool verify) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    GenICam::gcstring m_symbolic;
    int64_t m_value = 0;
    double m_numericValue = 0.0;
    bool m_selfClearing = false;
};

} // namespace GenApi::Detail
