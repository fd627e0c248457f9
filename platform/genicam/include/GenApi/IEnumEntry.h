// GenApi::IEnumEntry: one value of an enumeration, with its symbol and number.
#pragma once

#include <GCBase/GCString.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/IValue.h>

#include <cstdint>

namespace GenApi
{

class GENAPI_API IEnumEntry : virtual public IValue
{
public:
    ~IEnumEntry() override;

    virtual int64_t GetValue() const = 0;
    // The symbol, that is the entry's name.
    virtual GenICam::gcstring GetSymbolic() const = 0;
    virtual double GetNumericValue() const = 0;
    virtual bool IsSelfClearing() const = 0;
};

} // namespace GenApi
