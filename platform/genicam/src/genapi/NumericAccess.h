// The numeric access of a node whose value is of one kind (int64_t or double)
// for nodes that point at it: reads and writes of the other kind go through
// the node's own, integers widening and floats rounding to the nearest integer.
#pragma once

#include "RangeCheck.h"

#include <cstdint>
#include <type_traits>

namespace GenApi::Detail
{

template <class Base, class T>
class TNumericAccess : public Base
{
    static_assert(std::is_same_v<T, int64_t> || std::is_same_v<T, double>);

public:
    using Base::Base;

    bool IsNumeric() const override { return true; }
    int64_t ReadInteger() const override { return As<int64_t>(ReadNumber()); }
    void WriteInteger(int64_t value, bool verify) override { WriteNumber(As<T>(value), verify); }
    double ReadFloat() const override { return As<double>(ReadNumber()); }
    void WriteFloat(double value, bool verify) override { WriteNumber(As<T>(value), verify); }

protected:
    // Under the lock: the value in the node's own kind, unverified on reads.
    virtual T ReadNumber() const = 0;
    virtual void WriteNumber(T value, bool verify) = 0;

private:
    template <class To, class From>
    To As(From value) const
    {
        if constexpr (std::is_same_v<To, int64_t> && std::is_same_v<From, double>)
            return FloatToInteger(*this, value);
        else
            return static_cast<To>(value);
    }
};

} // namespace GenApi::Detail
