// Arrays of values: the untyped interface IArray, which the framework uses for
// every element type, and the typed interface IArrayT<T, void>, whose elements are
// COWPtr<T> handles. Both can carry an error instead of elements.
//
// The size and emptiness of an array are live properties: they are computed
// when read after a change, and their signals tell observers that a value they
// read went stale.
//
// Element operations are not synchronised: an array belongs to one thread at a
// time, like any value that is being written. The properties may be read from
// any thread.
#pragma once

#include <TarvikDataProcessingCore/core/IValue.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/utils/IReadOnlyProperty.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <cstddef>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API IArray : public IValue
{
public:
    IArray();
    ~IArray() override;

    // Stores `error` and drops every element. A null error raises
    // GenICam::InvalidArgumentException.
    virtual void setError(std::shared_ptr<IError> error) = 0;
    virtual Utils::TypeInfo getElementType() const = 0;

    // The operations below up to getElement raise GenICam::RuntimeException
    // "Array is in error state." while the array carries an error; those with an
    // index raise GenICam::InvalidArgumentException "Invalid index passed." for
    // an index at or beyond the size.
    virtual void clear() = 0;
    virtual size_t getSize() const = 0;
    virtual size_t getCapacity() const = 0;
    virtual bool isEmpty() const = 0;
    virtual void resize(size_t count) = 0;
    virtual void reserve(size_t count) = 0;
    // An invalid Variant stands for a null element.
    virtual void pushBack(const Utils::Variant& value) = 0;
    virtual void setElement(size_t index, const Utils::Variant& value) = 0;
    // An empty Variant for a null element.
    virtual Utils::Variant getElement(size_t index) const = 0;

    // Takes over the elements or the error of `source`, whose element type must
    // convert to this array's.
    virtual IArray& assign(const IArray& source) = 0;

    virtual Utils::IReadOnlyPropertyT<IInteger>& getSizeProperty() = 0;
    virtual Utils::IReadOnlyPropertyT<IBoolean>& getEmptyProperty() = 0;
};

// No default for `Enable`: a default argument would be left out of the type's
// identifier text wherever the compiler saw the short spelling first.
template <typename T, typename Enable>
class IArrayT : public IArray
{
public:
    virtual void pushBack(const Utils::COWPtr<T>& element) = 0;
    virtual void setElement(size_t index, const Utils::COWPtr<T>& element) = 0;
    // The element handle by value (a copy sharing the object) and by reference.
    virtual Utils::COWPtr<T> elementAt(size_t index) const = 0;
    virtual const Utils::COWPtr<T>& elementRef(size_t index) const = 0;
    virtual Utils::COWPtr<T> elementAt(size_t index) = 0;
    // The caller may assign through the reference; nobody is notified.
    virtual Utils::COWPtr<T>& elementRef(size_t index) = 0;
    virtual const Utils::COWPtr<T>* data() const = 0;
    virtual Utils::COWPtr<T>* data() = 0;
    // Takes over the elements or the error of `source`, with no test of types.
    virtual IArrayT& assign(const IArrayT& source) = 0;

    using IArray::assign;
    using IArray::pushBack;
    using IArray::setElement;
};

} // namespace Tarvik::DataProcessing::Core
