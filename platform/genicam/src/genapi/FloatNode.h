// <Float>: a double-precision feature whose value and limits are constants of
// the document or other nodes; an increment is optional.
#pragma once

#include "Node.h"
#include "RangeCheck.h"
#include "ValueOrPointer.h"

#include <GenApi/IFloat.h>

#include <limits>

namespace GenApi::Detail
{

class CFloatNode final : public CValueNode, public IFloat
{
public:
    using CValueNode::CValueNode;

    // IFloat
    void SetValue(double Value, bool Verify = true) override;
    double GetValue(bool Verify = false, bool IgnoreCache = false) const override;
    double GetMin() const override;
    double GetMax() const override;
    bool HasInc() const override;
    EIncMode GetIncMode() const override;
    double GetInc() const override;
    std::vector<double> GetListOfValidValues(bool Bounded = true) const override;
    ERepresentation GetRepresentation() const override { return m_representation; }
    GenICam::gcstring GetUnit() const override { return m_unit; }
    EDisplayNotation GetDisplayNotation() const override { return m_displayNotation; }
    int64_t GetDisplayPrecision() const override { return m_displayPrecision; }
    void ImposeMin(double Value) override;
    void ImposeMax(double Value) override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIFloat; }

    // CNode
    void Load(CElementReader& reader) override;
    void Link(CNodeLinker& linker) override;
    void CollectReads(std::vector<CNode*>& reads) const override;
    CNode* ValueChild() const override { return m_value.Pointer(); }
    void Verify() const override;
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
    ECachingMode CachingMode() const override;
    bool CacheValid() const override;

protected:
    EAccessMode OwnAccessMode(EIntent intent) const override;
    GenICam::gcstring ValueToString(bool verify, bool ignoreCache) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    double Inc() const { return m_inc.IsPresent() ? m_inc.Get(false) : 0.0; }
    double Read(bool verify, bool ignoreCache) const;

    CValueOrPointer<double> m_value;
    CValueOrPointer<double> m_min;
    CValueOrPointer<double> m_max;
    CValueOrPointer<double> m_inc;
    GenICam::gcstring m_unit;
    ERepresentation m_representation = PureNumber;
    EDisplayNotation m_displayNotation = fnAutomatic;
    int64_t m_displayPrecision = 6;
    double m_imposedMin = std::numeric_limits<double>::lowest();
    double m_imposedMax = std::numeric_limits<double>::max();
};

// The representation and display elements that Float and FloatReg share.
struct SFloatDisplay
{
    GenICam::gcstring unit;
    ERepresentation representation = PureNumber;
    EDisplayNotation displayNotation = fnAutomatic;
    int64_t displayPrecision = 6;
};
SFloatDisplay ReadFloatDisplay(CElementReader& reader);

} // namespace GenApi::Detail
