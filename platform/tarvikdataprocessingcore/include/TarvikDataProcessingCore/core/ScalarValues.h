// The scalar values: Integer, Float, Boolean and String, each behind an
// interface, each with a lock of its own and an optional error in place of data.
//
// Reading or writing the data of a value in error state raises
// GenICam::LogicalErrorException: the data is not there.
#pragma once

#include <TarvikDataProcessingCore/core/ValueBase.h>

#include <GCBase/GCString.h>

#include <cstdint>
#include <mutex>
#include <type_traits>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API IInteger : public IValue
{
public:
    ~IInteger() override;
    virtual int64_t getValue() const = 0;
    virtual void setValue(int64_t value) = 0;
};

class TDPC_API IFloat : public IValue
{
public:
    ~IFloat() override;
    virtual double getValue() const = 0;
    virtual void setValue(double value) = 0;
};

class TDPC_API IBoolean : public IValue
{
public:
    ~IBoolean() override;
    virtual bool getValue() const = 0;
    virtual void setValue(bool value) = 0;
};

class TDPC_API IString : public IValue
{
public:
    ~IString() override;
    virtual GenICam::gcstring getValue() const = 0;
    virtual void setValue(const GenICam::gcstring& value) = 0;
};

// One scalar value class: `Self` is the concrete class, whose registered type
// the object reports.
template <typename Interface, typename Self, typename V>
class ScalarValue : public Interface, protected ValueBase
{
public:
    using ValueType = V;

    ScalarValue(const V& value, std::shared_ptr<Threading::RecursiveMutex> lock)
        : ValueBase(std::move(lock))
        , m_value(value)
    {
    }
    ScalarValue(std::shared_ptr<IError> error, std::shared_ptr<Threading::RecursiveMutex> lock)
        : ValueBase(std::move(lock), std::move(error))
    {
    }
    // A copy of `source`, data or error, with the lock given here.
    ScalarValue(const Self& source, std::shared_ptr<Threading::RecursiveMutex> lock)
        : ValueBase(std::move(lock), source.errorState())
        , m_value(source.readValue())
    {
    }

    bool hasError(bool) const override { return hasErrorState(); }
    std::shared_ptr<IError> getError(bool) const override { return errorState(); }

    V getValue() const override
    {
        throwIfError("read");
        return readValue();
    }
    void setValue(std::conditional_t<std::is_class_v<V>, const V&, V> value) override
    {
        throwIfError("write");
        std::lock_guard guard(lock());
        m_value = value;
    }

    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Utils::TypeInfo::get<Self>(mustExist);
    }
    const void* getRawPointer() const override { return static_cast<const Self*>(this); }
    void* getRawPointer() override { return static_cast<Self*>(this); }

private:
    V readValue() const
    {
        std::lock_guard guard(lock());
        return m_value;
    }

    V m_value{};
};

class TDPC_API Integer final : public ScalarValue<IInteger, Integer, int64_t>
{
public:
    using ScalarValue::ScalarValue;
    ~Integer() override;
};

class TDPC_API Float final : public ScalarValue<IFloat, Float, double>
{
public:
    using ScalarValue::ScalarValue;
    ~Float() override;
};

class TDPC_API Boolean final : public ScalarValue<IBoolean, Boolean, bool>
{
public:
    using ScalarValue::ScalarValue;
    ~Boolean() override;
};

class TDPC_API String final : public ScalarValue<IString, String, GenICam::gcstring>
{
public:
    using ScalarValue::ScalarValue;
    ~String() override;
};

} // namespace Tarvik::DataProcessing::Core
