// <Boolean>: a feature that is on or off; its value is a constant of the
// document or the OnValue/OffValue of another node.
#pragma once

#include "Node.h"
#include "RangeCheck.h"
#include "ValueOrPointer.h"

#include <GenApi/IBoolean.h>

namespace GenApi::Detail
{

class CBooleanNode final : public CValueNode, public IBoolean
{
public:
    using CValueNode::CValueNode;

    // IBoolean
    void SetValue(bool Value, bool Verify = true) override;
    bool GetValue(bool Verify = false, bool IgnoreCache = false) const override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIBoolean; }

    // CNode
    void Load(CElementReader& reader) override;
    void Link(CNodeLinker& linker) override;
    void CollectReads(std::vector<CNode*>& reads) const override;
    CNode* ValueChild() const override { return m_pointer.Pointer(); }
    void Verify() const override;
    bool IsNumeric() const override { return true; }
    int64_t ReadInteger(bool ignoreCache) const override { return Read(ignoreCache) ? 1 : 0; }
    void WriteInteger(int64_t value, bool verify) override;
    double ReadFloat(bool ignoreCache) const override { return Read(ignoreCache) ? 1.0 : 0.0; }
    void WriteFloat(double value, bool verify) override
    {
        WriteInteger(FloatToInteger(*this, value), verify);
    }
    int64_t IntegerMin() const override { return 0; }
    int64_t IntegerMax() const override { return 1; }
    ECachingMode CachingMode() const override;
    bool CacheValid() const override;

protected:
    EAccessMode OwnAccessMode(EIntent intent) const override;
    GenICam::gcstring ValueToString(bool verify, bool ignoreCache) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    bool Read(bool ignoreCache) const;
    void Write(bool value, bool verify);

    // Value holds the constant, pValue the integer node compared to OnValue and OffValue.
    CValueOrPointer<bool> m_constant;
    CValueOrPointer<int64_t> m_pointer;
    int64_t m_onValue = 1;
    int64_t m_offValue = 0;
};

} // namespace GenApi::Detail
