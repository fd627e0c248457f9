// <Boolean>: a feature that is on or off; its value is a constant of the
// document or the OnValue/OffValue of another node.
#pragma once

#include "NumericAccess.h"
#include "ValueOrPointer.h"
#include "ValueOrPointerNode.h"

#include <GenApi/IBoolean.h>

namespace GenApi::Detail
{

class CBooleanNode final : public TNumericAccess<CValueOrPointerNode, int64_t>, public IBoolean
{
public:
    using TNumericAccess::TNumericAccess;

    // IBoolean
    void SetValue(bool Value, bool Verify = true) override;
    bool GetValue(bool Verify = false, bool IgnoreCache = false) const override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIBoolean; }

    // CNode
    void Load(CElementReader& reader) override;
    void Link(CNodeLinker& linker) override;
    CNode* ValueChild() const override { return m_pointer.Pointer(); }
    void Verify() const override;
    int64_t IntegerMin() const override { return 0; }
    int64_t IntegerMax() const override { return 1; }

protected:
    int64_t ReadNumber() const override { return Read() ? 1 : 0; }
    void WriteNumber(int64_t value, bool verify) override;
    GenICam::gcstring ValueToString(bool verify) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    bool Read() const;
    void Write(bool value, bool verify);

    // Value holds the constant, pValue the integer node compared to OnValue and OffValue.
    CValueOrPointer<bool> m_constant;
    CValueOrPointer<int64_t> m_pointer;
    int64_t m_onValue = 1;
    int64_t m_offValue = 0;
};

} // namespace GenApi::Detail
