// GenApi::IFloat: a double-precision feature with limits.
#pragma once

#include <GCBase/GCString.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/IValue.h>
#include <GenApi/Types.h>

#include <cstdint>
#include <vector>

namespace GenApi
{

class GENAPI_API IFloat : virtual public IValue
{
public:
    ~IFloat() override;

    // With Verify, a value outside [GetMin(), GetMax()] or, with an increment,
    // off its grid raises OutOfRangeException naming the feature and the limit.
    // Verify false skips these checks, never the access mode: a feature that is
    // not writable now raises AccessException. Between float and integer nodes
    // values are rounded to the nearest integer, halves away from zero.
    virtual void SetValue(double Value, bool Verify = true) = 0;
    virtual double GetValue(bool Verify = false, bool IgnoreCache = false) const = 0;

    virtual double GetMin() const = 0;
    virtual double GetMax() const = 0;
    virtual bool HasInc() const = 0;
    virtual EIncMode GetIncMode() const = 0;
    virtual double GetInc() const = 0;
    virtual std::vector<double> GetListOfValidValues(bool Bounded = true) const = 0;
    virtual ERepresentation GetRepresentation() const = 0;
    virtual GenICam::gcstring GetUnit() const = 0;
    virtual EDisplayNotation GetDisplayNotation() const = 0;
    virtual int64_t GetDisplayPrecision() const = 0;

    IFloat& operator=(double Value)
    {
        SetValue(Value);
        return *this;
    }
    double operator()() const { return GetValue(); }
};

} // namespace GenApi
