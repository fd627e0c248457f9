// GenApi::IBoolean: a feature that is on or off.
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/IValue.h>

namespace GenApi
{

class GENAPI_API IBoolean : virtual public IValue
{
public:
    ~IBoolean() override;

    // Writes OnValue or OffValue to the pValue node. Throws AccessException if
    // the feature is not writable now. ToString gives "true" or "false";
    // FromString also takes "1" and "0".
    virtual void SetValue(bool Value, bool Verify = true) = 0;
    // Throws AccessException if the feature is not readable now, and
    // OutOfRangeException if pValue holds neither OnValue nor OffValue.
    virtual bool GetValue(bool Verify = false, bool IgnoreCache = false) const = 0;

    IBoolean& operator=(bool Value)
    {
        SetValue(Value);
        return *this;
    }
    bool operator()() const { return GetValue(); }
};

} // namespace GenApi
