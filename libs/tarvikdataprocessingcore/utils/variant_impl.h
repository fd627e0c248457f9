// Template half of Variant: the data wrapper of a type and the typed operations.
//
// Both the value form and setData ask for the type with getTypeInfo(true), so
// an unregistered class is refused by the registry's GenICam::RuntimeException
// "The requested type is not registered."; "Type of passed data is not
// registered." is left for a class that reports an invalid type without raising.
//
// Chosen here: setData asks for the type before it takes the handle over, so a
// refused handle stays with the caller, and the Variant keeps its content.
#pragma once

#include <TarvikDataProcessingCore/utils/Variant.h>

#include <GCBase/GCException.h>

#include <new>

namespace Tarvik::DataProcessing::Utils
{

template <typename T>
class Variant::DataWrapper final : public Variant::IDataWrapper
{
public:
    // Holds a copy of `value`: with a fresh lock where the class takes one.
    explicit DataWrapper(const T& value)
    {
        T* const copy = DefaultCloner<T>()(value);
        if (!copy)
            throw INVALID_ARGUMENT_EXCEPTION("No object passed.");
        m_data = COWPtr<T>(copy);
        m_type = value.getTypeInfo(true);
        if (!m_type.isValid())
            throw INVALID_ARGUMENT_EXCEPTION("Type of passed data is not registered.");
        if (!m_data.isValid())
            throw BAD_ALLOC_EXCEPTION("Could not allocate data.");
    }

    // Shares (copy) or takes over (move) the handle's object.
    template <typename P>
    explicit DataWrapper(P&& pointer, const TypeInfo& type)
        : m_data(std::forward<P>(pointer))
        , m_type(type)
    {
    }

    DataWrapper(const DataWrapper&) = default;

    IDataWrapper* clone() const override
    {
        auto* const copy = new (std::nothrow) DataWrapper(*this);
        if (!copy)
            throw BAD_ALLOC_EXCEPTION("Could not allocate data wrapper.");
        return copy;
    }

    TypeInfo getTypeInfo() const override { return m_type; }

    void* getData(const TypeInfo& target) override
    {
        m_data.detach();
        if (!m_data.isValid())
            return nullptr;
        T* const object = m_data.get();
        return type_cast(object->getRawPointer(), object->getTypeInfo(false), target);
    }

    const void* getData(const TypeInfo& target) const override
    {
        if (!m_data.isValid())
            return nullptr;
        const T* const object = m_data.get();
        return type_cast(object->getRawPointer(), object->getTypeInfo(false), target);
    }

    const COWPtrBase& getCOWPtr() const override { return m_data; }
    void detach() override { m_data.detach(); }

private:
    COWPtr<T> m_data;
    TypeInfo m_type;
};

template <typename T>
requires(!std::is_same_v<std::remove_cvref_t<T>, Variant>) Variant::Variant(const T& value)
{
    auto* const wrapper = new (std::nothrow) DataWrapper<T>(value);
    if (!wrapper)
        throw BAD_ALLOC_EXCEPTION("Could not allocate data wrapper.");
    m_wrapper = wrapper;
}

namespace Detail
{
// The type of the object behind a handle, which the caller has found non-empty.
template <typename T>
TypeInfo objectType(const COWPtr<T>& pointer)
{
    const T* const object = pointer.get();
    if (!object)
        throw INVALID_ARGUMENT_EXCEPTION("No object passed.");
    const TypeInfo type = object->getTypeInfo(true);
    if (!type.isValid())
        throw INVALID_ARGUMENT_EXCEPTION("Type of passed data is not registered.");
    return type;
}

template <typename T, typename P>
Variant::IDataWrapper* makeWrapper(P&& pointer)
{
    if (!pointer.hasObject())
        throw INVALID_ARGUMENT_EXCEPTION("Invalid data pointer passed.");
    const TypeInfo type = objectType(pointer);
    auto* const wrapper = new (std::nothrow) Variant::DataWrapper<T>(std::forward<P>(pointer), type);
    if (!wrapper)
        throw BAD_ALLOC_EXCEPTION("Could not allocate data wrapper.");
    return wrapper;
}
} // namespace Detail

// The old content goes only once the new wrapper stands.
template <typename T>
void Variant::setData(COWPtr<T>&& pointer)
{
    IDataWrapper* const wrapper = Detail::makeWrapper<T>(std::move(pointer));
    reset();
    m_wrapper = wrapper;
}

template <typename T>
void Variant::setData(const COWPtr<T>& pointer)
{
    IDataWrapper* const wrapper = Detail::makeWrapper<T>(pointer);
    reset();
    m_wrapper = wrapper;
}

namespace Detail
{
// The pointer read of get<T>; the result is const where the Variant is.
template <typename R, typename V>
auto readPointer(V& variant, bool mustExist)
{
    using Result = std::conditional_t<std::is_const_v<V>, const R*, R*>;
    const TypeInfo type = TypeInfo::get<R>(mustExist);
    if (!type.isValid())
    {
        if (mustExist)
            throw RUNTIME_EXCEPTION("Requested type is not registered.");
        return static_cast<Result>(nullptr);
    }
    auto* const data = variant.get(type, mustExist);
    if (!data && mustExist)
        throw RUNTIME_EXCEPTION("Could not cast variant value to requested type.");
    return static_cast<Result>(data);
}
} // namespace Detail

template <typename R>
auto Variant::get(bool mustExist) const
{
    if constexpr (IsCOWPtr<R>::value)
    {
        using T = typename IsCOWPtr<R>::Element;
        if (!m_wrapper)
        {
            if (mustExist)
                throw RUNTIME_EXCEPTION("Variant is not valid.");
            return COWPtr<T>();
        }
        if (COWPtrBase::IObjectWrapper* const objectWrapper = m_wrapper->getCOWPtr().getObjectWrapper())
            if (void* const pointer = objectWrapper->cast(TypeInfo::get<T>(false)))
                return COWPtr<T>::shareCasted(objectWrapper, static_cast<T*>(pointer));
        if (mustExist)
            throw RUNTIME_EXCEPTION("Could not cast variant data to requested type.");
        return COWPtr<T>();
    }
    else
        return Detail::readPointer<R>(*this, mustExist);
}

template <typename R>
auto Variant::get(bool mustExist)
{
    if constexpr (IsCOWPtr<R>::value)
        return std::as_const(*this).template get<R>(mustExist);
    else
        return Detail::readPointer<R>(*this, mustExist);
}

} // namespace Tarvik::DataProcessing::Utils
