// GenApi::CPortImpl: the base of a client's port. A subclass implements
// GetAccessMode, Read and Write; the node map hands it the Port node it serves
// through SetPortImpl when INodeMap::Connect links them. The link is one-way:
// disconnecting (Connect with a null port) does not call back into the port,
// so a port may be destroyed while the map still lives and vice versa, as long
// as neither is used after the other's end.
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/INode.h>
#include <GenApi/IPortConstruct.h>
#include <GenApi/IPortReplay.h>
#include <GenApi/IPortWriteList.h>
#include <GenApi/Pointer.h>

namespace GenApi
{

class GENAPI_API CPortImpl : public IPortConstruct, public IPortReplay
{
public:
    CPortImpl() = default;
    ~CPortImpl() override;

    EAccessMode GetAccessMode() const override = 0;
    void Read(void* pBuffer, int64_t Address, int64_t Length) override = 0;
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override = 0;

    void SetPortImpl(IPort* pPort) override { m_ptrPort = pPort; }
    EYesNo GetSwapEndianess() override { return No; }

    // Invalidates the Port node and thereby every register on this port, if connected.
    virtual void InvalidateNode()
    {
        if (m_ptrPort.IsValid())
            m_ptrPort->InvalidateNode();
    }

    void Replay(IPortWriteList* pPortRecorder, bool Invalidate = true) override
    {
        if (pPortRecorder != nullptr)
            pPortRecorder->Replay(this);
        if (Invalidate)
            InvalidateNode();
    }

protected:
    // The Port node this port serves, empty until connected.
    CPointer<INode, IBase> m_ptrPort;
};

} // namespace GenApi
