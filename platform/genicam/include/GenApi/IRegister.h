// GenApi::IRegister: a node that maps a block of bytes of a port.
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/IValue.h>

#include <cstdint>

namespace GenApi
{

class GENAPI_API IRegister : virtual public IValue
{
public:
    ~IRegister() override;

    // Length must equal GetLength(); else InvalidArgumentException.
    virtual void Set(const uint8_t* pBuffer, int64_t Length, bool Verify = true) = 0;
    virtual void Get(uint8_t* pBuffer, int64_t Length, bool Verify = false, bool IgnoreCache = false) = 0;
    virtual int64_t GetLength() const = 0;
    virtual int64_t GetAddress() const = 0;
};

} // namespace GenApi
