// <Integer>: a 64-bit feature whose value, limits and increment are constants
// of the document or other nodes.
#pragma once

#include "Node.h"
#include "RangeCheck.h"
#include "ValueOrPointer.h"

#include <GenApi/IInteger.h>

#include <limits>

namespace GenApi::Detail
{

class CIntegerNode final : public CValueNode, public IInteger
{
public:
    using CValueNode::CValueNode;

    // IInteger
    void SetValue(int64_t Value, bool Verify = true) override;
    int64_t GetValue(bool Verify = false, bool IgnoreCache = false) const override;
    int64_t GetMin() const override;
    int64_t GetMax() const override;
    EIncMode GetIncMode() const override { return fixedIncrement; }
    int64_t GetInc() const override;
    std::vector<int64_t> GetListOfValidValues(bool Bounded = true) const override;
    ERepresentation GetRepresentation() const override { return m_representation; }
    GenICam::gcstring GetUnit() const override { return m_unit; }
    void ImposeMin(int64_t Value) override;
    void ImposeMax(int64_t Value) override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIInteger; }

    // CNode
    void Load(CElementReader& reader) override;
    void Link(CNodeLinker& linker) override;
    void CollectReads(std::vector<CNode*>& reads) const override;
    CNode* ValueChild() const override { return m_value.Pointer(); }
    void Verify() const override;
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
    ECachingMode CachingMode() const override;
    bool CacheValid() const override;

protected:
    EAccessMode OwnAccessMode(EIntent intent) const override;
    GenICam::gcstring ValueToString(bool verify, bool ignoreCache) override;
    void ValueFromString(const GenICam::gcstring& text, bool verify) override;

private:
    int64_t Inc() const;
    int64_t Read(bool verify, bool ignoreCache) const;

    CValueOrPointer<int64_t> m_value;
    CValueOrPointer<int64_t> m_min;
    CValueOrPointer<int64_t> m_max;
    CValueOrPointer<int64_t> m_inc;
    GenICam::gcstring m_unit;
    ERepresentation m_representation = PureNumber;
    int64_t m_imposedMin = std::numeric_limits<int64_t>::min();
    int64_t m_imposedMax = std::numeric_limits<int64_t>::max();
};

// The representation words of integer nodes, for the loader.
std::optional<ERepresentation> ReadIntegerRepresentation(CElementReader& reader);

} // namespace GenApi::Detail
