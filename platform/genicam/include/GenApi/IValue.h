// GenApi::IValue: a node whose value can be read and written as text.
#pragma once

#include <GCBase/GCString.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/IBase.h>

namespace GenApi
{

class INode;

class GENAPI_API IValue : virtual public IBase
{
public:
    ~IValue() override;

    virtual INode* GetNode() = 0;
    virtual GenICam::gcstring ToString(bool Verify = false, bool IgnoreCache = false) = 0;
    virtual void FromString(const GenICam::gcstring& ValueStr, bool Verify = true) = 0;
    // True while a read would be served from the cache without touching a port.
    virtual bool IsValueCacheValid() const = 0;
};

} // namespace GenApi
