// <IntReg>: an integer of 1 to 8 bytes in a port, signed or unsigned, in either
// byte order. Its limits are those of its length and sign.
#pragma once

#include "NumberNode.h"
#include "RegisterNode.h"

namespace GenApi::Detail
{

class CIntRegNode final : public TNumberNode<CRegisterNode, int64_t>
{
public:
    using TNumberNode<CRegisterNode, int64_t>::TNumberNode;

    // CNode
    void Load(CElementReader& reader) override;

protected:
    bool IsValidLength(int64_t length) const override { return length >= 1 && length <= 8; }
    const char* ValidLengths() const override { return "between 1 and 8"; }
    int64_t Fetch() const override;
    void Store(int64_t value, bool verify) override;
    int64_t Min() const override;
    int64_t Max() const override;
    bool HasIncrement() const override { return true; }
    int64_t Increment() const override { return 1; }

private:
    bool m_signed = false;
};

} // namespace GenApi::Detail
