// What IntReg and FloatReg share: a block of bytes at an address of a port,
// with an access mode, a caching mode and a byte order.
//
// Caching: NoCache reads go to the port every time; WriteThrough and
// WriteAround keep what was last read until the register is written or
// invalidated.
#pragma once

#include "Node.h"

#include <GenApi/IRegister.h>

#include <array>
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
    bool CacheValid() const override { return m_cacheValid; }
    void ClearCache() override { m_cacheValid = false; }
    GenICam::gcstring DenialDetail() const override;

protected:
    EAccessMode OwnAccessMode(EIntent intent) const override;

    // Under the lock, with the access mode already checked: the value's bytes
    // least significant first, whatever the order of the device.
    void ReadLittleEndian(uint8_t* bytes, bool ignoreCache) const;
    // Takes the bytes least significant first and reorders them in place.
    void WriteLittleEndian(uint8_t* bytes);
    int64_t Length() const { return m_length; }

    // The lengths a subclass allows: integer registers 1 to 8, float registers 4 or 8.
    virtual bool IsValidLength(int64_t length) const = 0;
    virtual const char* ValidLengths() const = 0;

private:
    int64_t Address() const;
    // Throws InvalidArgumentException unless a client's buffer has the register's length.
    void RequireLength(int64_t length, const char* verb) const;
    // Whether the bytes of the device are most significant first, after a port swap.
    bool BigEndianBytes() const;
    // In the order of the device.
    void ReadBytes(uint8_t* bytes, bool ignoreCache) const;
    void WriteBytes(const uint8_t* bytes);

    std::vector<int64_t> m_addresses;
    std::vector<GenICam::gcstring> m_addressNodeNames;
    std::vector<CNode*> m_addressNodes;
    int64_t m_length = 0;
    EAccessMode m_accessMode = RO;
    GenICam::gcstring m_portName;
    CPortNode* m_port = nullptr;
    ECachingMode m_cachingMode = WriteThrough;
    bool m_bigEndian = false;

    mutable std::array<uint8_t, 8> m_cache{};
    mutable bool m_cacheValid = false;
};

} // namespace GenApi::Detail
