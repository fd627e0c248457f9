// What IntReg and FloatReg share: a block of bytes at an address of a port,
// with an access mode.
//
// This runtime keeps no cache and knows one byte order: every read goes to the
// port, whatever Cachable says (the mode is reported as the document gives
// it), and the bytes are least significant first, the order of the machines
// this system runs on. A register of Endianess BigEndian is refused.
#pragma once

#include "Node.h"

#include <GenApi/IRegister.h>

#include <cstdint>

namespace GenApi::Detail
{

class CPortNode;

class CRegisterNode : public CValueNode, public virtual IRegister
{
public:
    using CValueNode::CValueNode;

    // IRegister
    void Set(const uint8_t* pBuffer, int64_t Length, bool Verify = true) override;
    void Get(uint8_t* pBuffer, int64_t Length, bool Verify = false, bool IgnoreCache = false) override;
    int64_t GetLength() const override { return m_length; }
    int64_t GetAddress() const override;

    // CNode
    void Load(CElementReader& reader) override;
    void Link(CNodeLinker& linker) override;
    void CollectReads(std::vector<CNode*>& reads) const override;
    ECachingMode CachingMode() const override { return m_cachingMode; }
    GenICam::gcstring DenialDetail() const override;

protected:
    EAccessMode OwnAccessMode(EIntent intent) const override;

    // Under the lock, with the access mode already checked: the value's bytes.
    void ReadBytes(uint8_t* bytes) const;
    void WriteBytes(const uint8_t* bytes);
    int64_t Length() const { return m_length; }

    // The lengths a subclass allows: integer registers 1 to 8, float registers 4 or 8.
    virtual bool IsValidLength(int64_t length) const = 0;
    virtual const char* ValidLengths() const = 0;

private:
    int64_t Address() const;
    // Throws InvalidArgumentException unless a client's buffer has the register's length.
    void RequireLength(int64_t length, const char* verb) const;

    std::vector<int64_t> m_addresses;
    std::vector<GenICam::gcstring> m_addressNodeNames;
    std::vector<CNode*> m_addressNodes;
    int64_t m_length = 0;
    EAccessMode m_accessMode = RO;
    GenICam::gcstring m_portName;
    CPortNode* m_port = nullptr;
    ECachingMode m_cachingMode = WriteThrough;
};

} // namespace GenApi::Detail
