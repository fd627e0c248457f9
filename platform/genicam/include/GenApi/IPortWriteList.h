// GenApi::IPortWriteList: a recorded list of port writes that can be replayed.
#pragma once

#include <GenApi/GenApiExport.h>

#include <cstdint>

namespace GenApi
{

class IPort;

class GENAPI_API IPortWriteList
{
public:
    virtual ~IPortWriteList();

    // Records one write; the bytes are copied.
    virtual void Write(const void* pBuffer, int64_t Address, int64_t Length) = 0;
    // Writes every recorded access to pPort, in recording order.
    virtual void Replay(IPort* pPort) = 0;
    virtual void SetCookie(const int64_t Value) = 0;
    virtual int64_t GetCookie() = 0;
};

} // namespace GenApi
