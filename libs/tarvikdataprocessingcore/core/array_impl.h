// Array<T, void>: the array value whose elements are COWPtr<T> handles, with a live
// size and emptiness. Array<IInteger, void> carries the histograms between nodes.
//
// An array is in one of two states: it holds elements, or it carries an error
// and no elements. Every operation on the elements raises "Array is in error
// state." in the second; the error, the assignments and both properties stay
// usable. Copying an array copies only its handles: the elements are shared
// until written.
//
// Thread safety: the element operations are not synchronised; an array belongs
// to one thread at a time. The lock given at construction guards the cached
// property values and the signals only, so the properties may be read from any
// thread. Each change of the element count fires the size binding's signal and
// then the emptiness binding's, as its last step.
#pragma once

#include <TarvikDataProcessingCore/core/Errors.h>
#include <TarvikDataProcessingCore/core/IArray.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/threading/RecursiveMutex.h>
#include <TarvikDataProcessingCore/utils/DateTime.h>
#include <TarvikDataProcessingCore/utils/ExceptionPtr.h>
#include <tarvikdataprocessingcore/utils/property_impl.h>

#include <GCBase/GCException.h>

#include <cstddef>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace Tarvik::DataProcessing::Core
{

template <typename T, typename Enable>
class Array final : public IArrayT<T, Enable>
{
public:
    using Lock = std::shared_ptr<Threading::IRecursiveLockable>;

    // `count` null elements.
    Array(size_t count, const Lock& lock)
        : Array(lock)
    {
        m_elements.resize(count);
    }

    // Error state; a null error raises GenICam::InvalidArgumentException.
    Array(std::shared_ptr<IError> error, const Lock& lock)
        : Array(lock)
    {
        if (!error)
            throw INVALID_ARGUMENT_EXCEPTION("Error pointer is not valid.");
        m_error = std::move(error);
    }

    // Shares the source's error, or its element handles.
    Array(const Array& source, const Lock& lock)
        : Array(lock)
    {
        if (source.m_error)
            m_error = source.m_error;
        else
            m_elements = source.m_elements;
    }

    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    ~Array() override = default;

    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Utils::TypeInfo::get<Array>(mustExist);
    }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }

    bool hasError(bool recursive) const override
    {
        if (m_error)
            return true;
        if (!recursive)
            return false;
        for (const Utils::COWPtr<T>& element : m_elements)
            if (element.hasObject() && element->hasError(true))
                return true;
        return false;
    }

    std::shared_ptr<IError> getError(bool recursive) const override
    {
        if (m_error || !recursive)
            return m_error;
        for (const Utils::COWPtr<T>& element : m_elements)
            if (element.hasObject())
                if (std::shared_ptr<IError> error = element->getError(true))
                    return error;
        return nullptr;
    }

    void setError(std::shared_ptr<IError> error) override
    {
        if (!error)
            throw INVALID_ARGUMENT_EXCEPTION("Error pointer is invalid.");
        m_error = std::move(error);
        m_elements.clear();
        notifyChanged();
    }

    Utils::TypeInfo getElementType() const override { return m_elementType; }

    void clear() override
    {
        requireData();
        m_elements.clear();
        notifyChanged();
    }

    size_t getSize() const override
    {
        requireData();
        return m_elements.size();
    }

    size_t getCapacity() const override
    {
        requireData();
        return m_elements.capacity();
    }

    bool isEmpty() const override
    {
        requireData();
        return m_elements.empty();
    }

    void resize(size_t count) override
    {
        requireData();
        m_elements.resize(count);
        notifyChanged();
    }

    void reserve(size_t count) override
    {
        requireData();
        m_elements.reserve(count);
    }

    void pushBack(const Utils::Variant& value) override
    {
        requireData();
        m_elements.push_back(elementOf(value));
        notifyChanged();
    }

    void setElement(size_t index, const Utils::Variant& value) override
    {
        requireIndex(index);
        m_elements[index] = elementOf(value);
    }

    Utils::Variant getElement(size_t index) const override
    {
        requireIndex(index);
        Utils::Variant value;
        if (m_elements[index].hasObject())
            value.setData(m_elements[index]);
        return value;
    }

    Array& assign(const IArray& source) override
    {
        if (&source == static_cast<const IArray*>(this))
            return *this;
        if (!source.getElementType().canConvert(m_elementType))
            throw INVALID_ARGUMENT_EXCEPTION("Data in the given array is not compatible with this array.");
        if (std::shared_ptr<IError> error = source.getError(true))
            return takeError(std::move(error));
        std::vector<Utils::COWPtr<T>> elements(source.getSize());
        for (size_t index = 0; index < elements.size(); ++index)
        {
            const Utils::Variant value = source.getElement(index);
            if (value.isValid())
                elements[index] = value.template get<Utils::COWPtr<T>>(true);
        }
        return takeElements(std::move(elements));
    }

    Utils::IReadOnlyPropertyT<IInteger>& getSizeProperty() override { return m_sizeProperty; }
    Utils::IReadOnlyPropertyT<IBoolean>& getEmptyProperty() override { return m_emptyProperty; }

    void pushBack(const Utils::COWPtr<T>& element) override
    {
        requireData();
        m_elements.push_back(element);
        notifyChanged();
    }

    void setElement(size_t index, const Utils::COWPtr<T>& element) override
    {
        requireIndex(index);
        m_elements[index] = element;
    }

    Utils::COWPtr<T> elementAt(size_t index) const override
    {
        requireIndex(index);
        return m_elements[index];
    }

    const Utils::COWPtr<T>& elementRef(size_t index) const override
    {
        requireIndex(index);
        return m_elements[index];
    }

    Utils::COWPtr<T> elementAt(size_t index) override
    {
        requireIndex(index);
        return m_elements[index];
    }

    Utils::COWPtr<T>& elementRef(size_t index) override
    {
        requireIndex(index);
        return m_elements[index];
    }

    const Utils::COWPtr<T>* data() const override
    {
        requireData();
        return m_elements.data();
    }

    Utils::COWPtr<T>* data() override
    {
        requireData();
        return m_elements.data();
    }

    Array& assign(const IArrayT<T, Enable>& source) override
    {
        if (&source == static_cast<const IArrayT<T, Enable>*>(this))
            return *this;
        if (std::shared_ptr<IError> error = source.getError(true))
            return takeError(std::move(error));
        const size_t size = source.getSize();
        const Utils::COWPtr<T>* const elements = source.data();
        if (!elements)
            throw RUNTIME_EXCEPTION("Invalid array data retrieved.");
        return takeElements(std::vector<Utils::COWPtr<T>>(elements, elements + size));
    }

    using IArrayT<T, Enable>::assign;

private:
    // Bindings and properties on `lock`, no elements, no error.
    explicit Array(const Lock& lock)
        : m_elementType(Utils::TypeInfo::get<T>(true))
        , m_sizeBinding(std::make_shared<Utils::BasicBinding<IInteger>>([this] { return sizeValue(); }, lock))
        , m_sizeProperty(m_sizeBinding, lock)
        , m_emptyBinding(
              std::make_shared<Utils::BasicBinding<IBoolean>>([this] { return emptyValue(); }, lock))
        , m_emptyProperty(m_emptyBinding, lock)
    {
    }

    void requireData() const
    {
        if (hasError(false))
            throw RUNTIME_EXCEPTION("Array is in error state.");
    }

    void requireIndex(size_t index) const
    {
        requireData();
        if (index >= m_elements.size())
            throw INVALID_ARGUMENT_EXCEPTION("Invalid index passed.");
    }

    // The element handle of a Variant: null for an invalid one; raises on another type.
    static Utils::COWPtr<T> elementOf(const Utils::Variant& value)
    {
        return value.isValid() ? value.template get<Utils::COWPtr<T>>(true) : Utils::COWPtr<T>();
    }

    Array& takeError(std::shared_ptr<IError> error)
    {
        m_error = std::move(error);
        m_elements.clear();
        notifyChanged();
        return *this;
    }

    Array& takeElements(std::vector<Utils::COWPtr<T>> elements)
    {
        m_elements = std::move(elements);
        m_error.reset();
        notifyChanged();
        return *this;
    }

    void notifyChanged()
    {
        m_sizeBinding->notifyChanged();
        m_emptyBinding->notifyChanged();
    }

    // A property value of class `Value` from `query`, or in error state when the
    // array has an error or the query fails: reading a property never throws for that.
    template <typename Value, typename Interface, typename Query>
    Utils::COWPtr<Interface> propertyValue(Query query, const char* unknownFailure) const
    {
        const auto freshLock = [] { return std::make_shared<Threading::RecursiveMutex>(); };
        if (hasError(false))
            return Utils::COWPtr<Interface>(new Value(getError(true), freshLock()));
        std::shared_ptr<IError> error;
        typename Value::ValueType result{};
        try
        {
            result = query();
        }
        catch (const GenICam::GenericException& e)
        {
            error = std::make_shared<GenICamExceptionError>(e.GetDescription(), Utils::DateTime::now(),
                                                            Utils::getCurrentException());
        }
        catch (const std::exception& e)
        {
            error = std::make_shared<StdExceptionError>(e.what(), Utils::DateTime::now(),
                                                        Utils::getCurrentException());
        }
        catch (...)
        {
            error = std::make_shared<UnknownExceptionError>(unknownFailure, Utils::DateTime::now(),
                                                            Utils::getCurrentException());
        }
        if (error)
            return Utils::COWPtr<Interface>(new Value(std::move(error), freshLock()));
        return Utils::COWPtr<Interface>(new Value(result, freshLock()));
    }

    Utils::COWPtr<IInteger> sizeValue() const
    {
        return propertyValue<Integer, IInteger>([this] { return static_cast<int64_t>(getSize()); },
                                                "Unknown exception while getting size.");
    }

    Utils::COWPtr<IBoolean> emptyValue() const
    {
        return propertyValue<Boolean, IBoolean>([this] { return isEmpty(); },
                                                "Unknown exception while determining if array is empty.");
    }

    Utils::TypeInfo m_elementType;
    std::shared_ptr<IError> m_error;
    std::shared_ptr<Utils::BasicBinding<IInteger>> m_sizeBinding;
    Utils::ReadOnlyProperty<IInteger> m_sizeProperty;
    std::shared_ptr<Utils::BasicBinding<IBoolean>> m_emptyBinding;
    Utils::ReadOnlyProperty<IBoolean> m_emptyProperty;
    std::vector<Utils::COWPtr<T>> m_elements;
};

} // namespace Tarvik::DataProcessing::Core
