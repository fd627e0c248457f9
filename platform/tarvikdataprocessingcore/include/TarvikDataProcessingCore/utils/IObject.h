// The root of every object the framework handles by type: it tells its
// registered type and hands out its own address, which the registry's cast
// functions take.
#pragma once

#include <TarvikDataProcessingCore/utils/TypeInfo.h>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API IObject
{
public:
    virtual TypeInfo getTypeInfo(bool mustExist) const = 0;
    virtual const void* getRawPointer() const = 0;
    virtual void* getRawPointer() = 0;
    virtual ~IObject();
};

} // namespace Tarvik::DataProcessing::Utils
