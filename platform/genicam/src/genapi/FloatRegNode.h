// <FloatReg>: an IEEE 754 number of 4 or 8 bytes in a port, in either byte order.
#pragma once

#include "FloatNode.h"
#include "RangeCheck.h"
#include "RegisterNode.h"

#include <GenApi/IFloat.h>

#include <limits>

namespace GenApi::Detail
{

class CFloatRegNode final : public CRegisterNode, public IFloat
{
public:
    using CRegisterNode::CRegisterNode;

    // IFloat
    void SetValue(double Value, bool Verify = true) override;
    double GetValue(bool Verify = false, bool IgnoreCache = false) const override;
    double GetMin() const override;
    double GetMax() const override;
    bool HasInc() const override { return false; }
    EIncMode GetIncMode() const override { return noIncrement; }
    double GetInc() const override;
    std::vector<double> GetListOfValidValues(bool /*Bounded*/ = true) const override { return {}; }
    ERepresentation GetRepresentation() const override { return m_display.representation; }
    GenICam::gcstring GetUnit() const override { return m_display.unit; }
    EDisplayNotation GetDisplayNotation() const override { return m_display.displayNotation; }
    int64_t GetDisplayPrecision() const override { return m_display.displayPrecision; }
    void ImposeMin(double Value) override;
    void ImposeMax(double Value) override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIFloat; }

    // CNode
    void Load(CElementReader& reader) override;
    bool IsNumeric() const override { return true; }
    int64_t ReadInteger(bool ignoreCache) const override
    {
        return FloatToInteger(*this, ReadFloat(ignoreCache));
    }
    void WriteInteger(int64_t value, bool verify) override { WriteFloat(static_cast<double>(value), verify); }
    double ReadFloat(bool ignoreCache) const override;
    void WriteFloat(double value, bool verify) override;
    double FloatMin() const override;
    double FloatMax() const override;

protected:
    bool IsValidLength(int64_t length) const override { return length == 4 || length == 8; }
    const char* ValidLengths() const override { return "4 or 8"; }
    GenICam::gcstring ValueToString(bool verify, bool ignoreCache) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    double Read(bool verify, bool ignoreCache) const;

    SFloatDisplay m_display;
    double m_imposedMin = std::numeric_limits<double>::lowest();
    double m_imposedMax = std::numeric_limits<double>::max();
};

} // namespace GenApi::Detail
