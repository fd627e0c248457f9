// <FloatReg>: an IEEE 754 number of 4 or 8 bytes in a port, in either byte
// order. Its limits are those of its length; it has no increment.
#pragma once

#include "NumberNode.h"
#include "RegisterNode.h"

namespace GenApi::Detail
{

class CFloatRegNode final : public TFloatNumberNode<CRegisterNode>
{
public:
    using TFloatNumberNode<CRegisterNode>::TFloatNumberNode;

    // CNode
    void Load(CElementReader& reader) override;

protected:
    bool IsValidLength(int64_t length) const override { return length == 4 || length == 8; }
    const char* ValidLengths() const override { return "4 or 8"; }
    double Fetch() const override;
    void Store(double value, bool verify) override;
    double Min() const override;
    double Max() const override;
    bool HasIncrement() const override { return false; }
    double Increment() const override { return 0.0; }
};

} // namespace GenApi::Detail
