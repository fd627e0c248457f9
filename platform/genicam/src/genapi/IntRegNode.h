// <IntReg>: an integer of 1 to 8 bytes in a port, signed or unsigned, in either
// byte order. Its limits are those of its length and sign.
#pragma once

#include "RangeCheck.h"
#include "RegisterNode.h"

#include <GenApi/IInteger.h>

#include <limits>

namespace GenApi::Detail
{

class CIntRegNode final : public CRegisterNode, public IInteger
{
public:
    using CRegisterNode::CRegisterNode;

    // IInteger
    void SetValue(int64_t Value, bool Verify = true) override;
    int64_t GetValue(bool Verify = false, bool IgnoreCache = false) const override;
    int64_t GetMin() const override;
    int64_t GetMax() const override;
    EIncMode GetIncMode() const override { return fixedIncrement; }
    int64_t GetInc() const override { return 1; }
    std::vector<int64_t> GetListOfValidValues(bool /*Bounded*/ = true) const override { return {}; }
    ERepresentation GetRepresentation() const override { return m_representation; }
    GenICam::gcstring GetUnit() const override { return m_unit; }
    void ImposeMin(int64_t Value) override;
    void ImposeMax(int64_t Value) override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIInteger; }

    // CNode
    void Load(CElementReader& reader) override;
    bool IsNumeric() const override { return true; }
    int64_t ReadInteger(bool ignoreCache) const override;
    void WriteInteger(int64_t value, bool verify) override;
    double ReadFloat(bool ignoreCache) const override
    {
        return static_cast<double>(ReadInteger(ignoreCache));
    }
    void WriteFloat(double value, bool verify) override
    {
        WriteInteger(FloatToInteger(*this, value), verify);
    }
    int64_t IntegerMin() const override;
    int64_t IntegerMax() const override;

protected:
    bool IsValidLength(int64_t length) const override { return length >= 1 && length <= 8; }
    const char* ValidLengths() const override { return "between 1 and 8"; }
    GenICam::gcstring ValueToString(bool verify, bool ignoreCache) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    int64_t Read(bool verify, bool ignoreCache) const;

    bool m_signed = false;
    GenICam::gcstring m_unit;
    ERepresentation m_representation = PureNumber;
    int64_t m_imposedMin = std::numeric_limits<int64_t>::min();
    int64_t m_imposedMax = std::numeric_limits<int64_t>::max();
};

} // namespace GenApi::Detail
