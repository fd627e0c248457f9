// <Port>: the node that a client's port object is connected to. Registers
// with this pPort reach the client's Read and Write through it, in the
// machine's byte order: a Port that swaps bytes is refused, and a client's
// GetSwapEndianess is not asked.
#pragma once

#include "Node.h"

#include <GenApi/IPort.h>

namespace GenApi::Detail
{

class CPortNode final : public CNode, public IPort
{
public:
    using CNode::CNode;

    // IPort, under the map's lock; AccessException if no port is connected.
    void Read(void* pBuffer, int64_t Address, int64_t Length) override;
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override;
    EInterfaceType GetPrincipalInterfaceType() const override { return intfIPort; }

    // CNode
    void Load(CElementReader& reader) override;
    GenICam::gcstring DenialDetail() const override;

    // Internal, under the lock.
    void Attach(IPort* port);
    void ReadPort(void* buffer, int64_t address, int64_t length) const;
    void WritePort(const void* buffer, int64_t address, int64_t length) const;

protected:
    EAccessMode OwnAccessMode(EIntent intent) const override;

private:
    IPort* m_port = nullptr;
};

} // namespace GenApi::Detail
