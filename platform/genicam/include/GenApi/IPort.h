// GenApi::IPort: byte access to a device's register space. A client's port
// object implements it; the node map calls Read and Write under its lock.
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/IBase.h>

#include <cstdint>

namespace GenApi
{

class GENAPI_API IPort : virtual public IBase
{
public:
    ~IPort() override;

    virtual void Read(void* pBuffer, int64_t Address, int64_t Length) = 0;
    virtual void Write(const void* pBuffer, int64_t Address, int64_t Length) = 0;
};

} // namespace GenApi
