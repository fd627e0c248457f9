// Variant: the type-erased value on a pin. It holds one data wrapper, which
// holds one COWPtr; copies of a Variant share the object until somebody writes.
//
// A Variant is not safe for concurrent use: each thread has its own copy.
#pragma once

#include <TarvikDataProcessingCore/utils/TypeInfo.h>

#include <tarvikdataprocessingcore/utils/cowptr_impl.h>

#include <type_traits>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API Variant
{
public:
    class TDPC_API IDataWrapper
    {
    public:
        IDataWrapper();
        virtual ~IDataWrapper();
        // A new wrapper sharing the object.
        virtual IDataWrapper* clone() const = 0;
        // The dynamic type of the object, as the object reports it.
        virtual TypeInfo getTypeInfo() const = 0;
        // The object seen as `target`, after a detach; null if it is none.
        virtual void* getData(const TypeInfo& target) = 0;
        virtual const void* getData(const TypeInfo& target) const = 0;
        virtual const COWPtrBase& getCOWPtr() const = 0;
        virtual void detach() = 0;
    };

    template <typename T>
    class DataWrapper;

    Variant() noexcept = default;
    Variant(const Variant& other);
    Variant(Variant&& other) noexcept;
    Variant& operator=(const Variant& other);
    Variant& operator=(Variant&& other) noexcept;
    ~Variant();

    // Holds a copy of `value`, made as its class's data wrapper says.
    template <typename T>
    requires(!std::is_same_v<std::remove_cvref_t<T>, Variant>) explicit Variant(const T& value);

    bool isValid() const noexcept { return m_wrapper != nullptr; }
    void reset() noexcept;
    // The stored type; invalid for an empty Variant.
    TypeInfo getTypeInfo() const;

    // The object seen as `type`. An empty Variant raises "Variant is not valid."
    // with `mustExist`; a failed cast gives null. The writable form detaches first.
    void* get(const TypeInfo& type, bool mustExist);
    const void* get(const TypeInfo& type, bool mustExist) const;

    // Replaces the content with a wrapper around the pointer's object: the first
    // form takes the handle over, the second shares with it.
    template <typename T>
    void setData(COWPtr<T>&& pointer);
    template <typename T>
    void setData(const COWPtr<T>& pointer);

    // get<COWPtr<T>>(mustExist): a handle on the object seen as T.
    // get<T>(mustExist): a pointer into the object seen as T.
    template <typename R>
    auto get(bool mustExist) const;
    template <typename R>
    auto get(bool mustExist);

private:
    IDataWrapper* m_wrapper = nullptr;
};

} // namespace Tarvik::DataProcessing::Utils

#include <tarvikdataprocessingcore/utils/variant_impl.h>
