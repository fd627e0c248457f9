// GenApi::IDestroy: an object that its creator's library must delete.
#pragma once

#include <GenApi/GenApiExport.h>

namespace GenApi
{

class GENAPI_API IDestroy
{
public:
    virtual ~IDestroy();

    virtual void Destroy() = 0;
};

} // namespace GenApi
