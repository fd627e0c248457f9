// GenApi::IInteger: a 64-bit integer feature with limits and an increment.
#pragma once

#include <GCBase/GCString.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/IValue.h>
#include <GenApi/Types.h>

#include <cstdint>
#include <vector>

namespace GenApi
{

class GENAPI_API IInteger : virtual public IValue
{
public:
    ~IInteger() override;

    // With Verify, a value below GetMin(), above GetMax() or off the grid
    // GetMin() + k * GetInc() raises OutOfRangeException naming the feature and
    // the limit. Verify false skips these checks, never the access mode: a
    // feature that is not writable now raises AccessException.
    virtual void SetValue(int64_t Value, bool Verify = true) = 0;
    virtual int64_t GetValue(bool Verify = false, bool IgnoreCache = false) const = 0;

    virtual int64_t GetMin() const = 0;
    virtual int64_t GetMax() const = 0;
    virtual EIncMode GetIncMode() const = 0;
    virtual int64_t GetInc() const = 0;
    // The valid values when the increment is a list; empty otherwise.
    virtual std::vector<int64_t> GetListOfValidValues(bool Bounded = true) const = 0;
    virtual ERepresentation GetRepresentation() const = 0;
    virtual GenICam::gcstring GetUnit() const = 0;

    IInteger& operator=(int64_t Value)
    {
        SetValue(Value);
        return *this;
    }
    int64_t operator()() const { return GetValue(); }
};

} // namespace GenApi
