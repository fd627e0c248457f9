// COWPtr<T>: a handle to a shared, counted object that is cloned on the first
// write through a handle that is not the only one.
//
// The object is owned by a reference-counted ObjectWrapper, which knows the
// object's concrete class U, so that a COWPtr<IImage> clones a concrete Image
// through the interface. A clone never shares its source's lock: classes that
// take a lock get a fresh RecursiveMutex.
//
// Thread safety: the wrapper's use count is atomic; a handle itself belongs to
// one thread at a time. Objects behind several handles are only read.
//
// Memory: a handle whose wrapper cannot be allocated gives its object to the
// deleter and stays empty; the Variant's wrapper and clone() turn that into
// GenICam::BadAllocException "Could not allocate data." and "Could not clone
// object.". A cloner that runs out of memory gives null, which is "No object
// passed.".
//
// Chosen here: a handle keeps its `casted` flag through a detach, so that the
// clone is always reached through cast() when the handle was made by a cast.
// That keeps handles right for any layout of T within U.
#pragma once

#include <TarvikDataProcessingCore/threading/RecursiveMutex.h>
#include <TarvikDataProcessingCore/utils/IObject.h>

#include <GCBase/GCException.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace Tarvik::DataProcessing::Utils
{

class COWPtrBase : public IObject
{
public:
    class IObjectWrapper
    {
    public:
        virtual ~IObjectWrapper() = default;
        virtual void addRef() = 0;
        virtual void release() = 0;
        virtual int64_t getUseCount() const = 0;
        // A new wrapper, count 1, around a clone of the object.
        virtual IObjectWrapper* clone() const = 0;
        // The object as the wrapper's T.
        virtual void* getPointer() const = 0;
        // The object seen as `target`, by the registry; null if it is none.
        virtual void* cast(const TypeInfo& target) = 0;
        virtual const void* getDeleter() const = 0;
        virtual const void* getCloner() const = 0;
    };

    template <typename T, typename U, typename Deleter, typename Cloner>
    class ObjectWrapper;

    virtual IObjectWrapper* getObjectWrapper() const = 0;
    virtual bool isValid() const = 0;
    virtual int64_t getUseCount() const = 0;
    virtual bool isUnique() const = 0;
    virtual void reset() = 0;
    virtual void detach() = 0;
    virtual bool hasObject() const = 0;
};

// Makes a new object from `source`: with a fresh lock where the class takes
// one, by plain copy otherwise. Null when memory is exhausted.
template <typename T>
struct DefaultCloner
{
    template <typename U>
    U* operator()(const U& source) const
    {
        try
        {
            if constexpr (std::is_constructible_v<U, const U&, std::shared_ptr<Threading::RecursiveMutex>>)
                return new U(source, std::make_shared<Threading::RecursiveMutex>());
            else
                return new U(source);
        }
        catch (const std::bad_alloc&)
        {
            return nullptr;
        }
    }
};

template <typename T>
class COWPtr;

template <typename T, typename U, typename Deleter, typename Cloner>
class COWPtrBase::ObjectWrapper final : public COWPtrBase::IObjectWrapper
{
public:
    explicit ObjectWrapper(U* object)
        : m_object(object)
    {
        if (!object)
            throw INVALID_ARGUMENT_EXCEPTION("No object passed.");
        try
        {
            void* const rawPointer = m_object->getRawPointer();
            const TypeInfo type = m_object->getTypeInfo(false);
            if (rawPointer && type.isValid())
            {
                m_rawPointer = rawPointer;
                m_type = type;
            }
        }
        catch (...)
        {
            m_deleter(m_object);
            m_object = nullptr;
            throw;
        }
    }
    ~ObjectWrapper() override
    {
        m_deleter(m_object);
        m_object = nullptr;
    }
    ObjectWrapper(const ObjectWrapper&) = delete;
    ObjectWrapper& operator=(const ObjectWrapper&) = delete;

    void addRef() override
    {
        int64_t count = m_useCount.load(std::memory_order_relaxed);
        while (count != 0 && !m_useCount.compare_exchange_weak(count, count + 1, std::memory_order_relaxed))
        {
        }
    }

    void release() override
    {
        int64_t count = m_useCount.load(std::memory_order_relaxed);
        while (count != 0 && !m_useCount.compare_exchange_weak(count, count - 1, std::memory_order_acq_rel))
        {
        }
        if (count == 1)
            delete this;
    }

    int64_t getUseCount() const override { return m_useCount.load(std::memory_order_acquire); }

    IObjectWrapper* clone() const override;

    void* getPointer() const override { return static_cast<T*>(m_object); }

    void* cast(const TypeInfo& target) override
    {
        if (!m_object)
            return nullptr;
        return type_cast(m_object->getRawPointer(), m_object->getTypeInfo(false), target);
    }

    const void* getDeleter() const override { return &m_deleter; }
    const void* getCloner() const override { return &m_cloner; }

private:
    std::atomic<int64_t> m_useCount{1};
    U* m_object;
    void* m_rawPointer = nullptr;
    TypeInfo m_type;
    [[no_unique_address]] Deleter m_deleter;
    [[no_unique_address]] Cloner m_cloner;
};

template <typename T>
class COWPtr final : public COWPtrBase
{
public:
    COWPtr() noexcept = default;

    // Takes ownership of `object`; U is its concrete class, which clones copy.
    // Without memory for the wrapper the object goes and the handle stays empty.
    template <typename U, typename Deleter = std::default_delete<U>, typename Cloner = DefaultCloner<T>>
    requires std::is_base_of_v<T, U>
    explicit COWPtr(U* object, Deleter = Deleter(), Cloner = Cloner())
    {
        using Wrapper = ObjectWrapper<T, U, Deleter, Cloner>;
        if (!object)
            throw INVALID_ARGUMENT_EXCEPTION("No object passed.");
        // The object is owned from here on: it must not be lost if the wrapper
        // cannot be made. The wrapper's constructor gives it up itself on failure.
        void* const memory = ::operator new(sizeof(Wrapper), std::nothrow);
        if (!memory)
        {
            Deleter()(object);
            return;
        }
        try
        {
            m_wrapper = new (memory) Wrapper(object);
        }
        catch (...)
        {
            ::operator delete(memory);
            throw;
        }
        m_pointer = object;
        m_casted = false;
    }

    COWPtr(const COWPtr& other) noexcept
        : m_wrapper(other.m_wrapper)
        , m_pointer(other.m_pointer)
        , m_casted(other.m_casted)
    {
        if (m_wrapper)
            m_wrapper->addRef();
    }

    COWPtr(COWPtr&& other) noexcept
        : m_wrapper(std::exchange(other.m_wrapper, nullptr))
        , m_pointer(std::exchange(other.m_pointer, nullptr))
        , m_casted(std::exchange(other.m_casted, false))
    {
    }

    // Sees the object of a handle of another type as T; the object must be a T.
    template <typename U>
    requires(!std::is_same_v<U, T>) COWPtr(const COWPtr<U>& other)
    {
        IObjectWrapper* const wrapper = other.getObjectWrapper();
        if (!wrapper)
            return;
        void* const pointer = wrapper->cast(TypeInfo::get<T>(false));
        if (!pointer)
            throw INVALID_ARGUMENT_EXCEPTION(
                "Cannot cast pointer of passed COW pointer to this COW pointer.");
        wrapper->addRef();
        m_wrapper = wrapper;
        m_pointer = static_cast<T*>(pointer);
        m_casted = true;
    }

    COWPtr& operator=(const COWPtr& other) noexcept
    {
        if (other.m_wrapper)
            other.m_wrapper->addRef();
        if (other.m_wrapper == m_wrapper)
        {
            if (other.m_wrapper)
                other.m_wrapper->release();
            return *this;
        }
        release();
        m_wrapper = other.m_wrapper;
        m_pointer = other.m_pointer;
        m_casted = other.m_casted;
        return *this;
    }

    COWPtr& operator=(COWPtr&& other) noexcept
    {
        if (this != &other)
        {
            release();
            m_wrapper = std::exchange(other.m_wrapper, nullptr);
            m_pointer = std::exchange(other.m_pointer, nullptr);
            m_casted = std::exchange(other.m_casted, false);
        }
        return *this;
    }

    ~COWPtr() override { release(); }

    // Read-only access never clones.
    const T* get() const
    {
        if (!m_pointer)
            throw RUNTIME_EXCEPTION("Cannot access nullptr object.");
        return m_pointer;
    }
    // Writable access clones a shared object first.
    T* get()
    {
        detach();
        if (!m_pointer)
            throw RUNTIME_EXCEPTION("Cannot access nullptr object.");
        return m_pointer;
    }
    const T* operator->() const { return get(); }
    T* operator->() { return get(); }
    const T& operator*() const { return *get(); }
    T& operator*() { return *get(); }

    TypeInfo getTypeInfo(bool mustExist) const override { return TypeInfo::get<COWPtr<T>>(mustExist); }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }

    IObjectWrapper* getObjectWrapper() const override { return m_wrapper; }
    bool isValid() const override { return m_pointer != nullptr; }
    bool hasObject() const override { return m_pointer != nullptr; }
    int64_t getUseCount() const override { return m_wrapper ? m_wrapper->getUseCount() : 0; }
    bool isUnique() const override { return getUseCount() == 1; }

    void reset() override
    {
        release();
        m_wrapper = nullptr;
        m_pointer = nullptr;
        m_casted = false;
    }

    void detach() override
    {
        if (!m_wrapper || m_wrapper->getUseCount() <= 1)
            return;
        IObjectWrapper* const clone = m_wrapper->clone();
        if (!clone)
            throw RUNTIME_EXCEPTION("Could not clone object.");
        void* pointer = nullptr;
        try
        {
            if (m_casted)
            {
                pointer = clone->cast(TypeInfo::get<T>(false));
                if (!pointer)
                    throw RUNTIME_EXCEPTION("Cannot cast pointer of cloned object to COW pointer.");
            }
            else
            {
                pointer = clone->getPointer();
                if (!pointer)
                    throw RUNTIME_EXCEPTION("Could not get pointer of cloned object.");
            }
        }
        catch (...)
        {
            clone->release();
            throw;
        }
        const bool casted = m_casted;
        reset();
        m_wrapper = clone;
        m_pointer = static_cast<T*>(pointer);
        m_casted = casted;
    }

    // A handle on an object that `wrapper` owns, seen as T at `pointer`; takes a count.
    static COWPtr shareCasted(IObjectWrapper* wrapper, T* pointer) noexcept
    {
        COWPtr handle;
        wrapper->addRef();
        handle.m_wrapper = wrapper;
        handle.m_pointer = pointer;
        handle.m_casted = true;
        return handle;
    }

    // Hands the wrapper and its count over to the caller; the handle becomes empty.
    IObjectWrapper* releaseWrapper() noexcept
    {
        m_pointer = nullptr;
        m_casted = false;
        return std::exchange(m_wrapper, nullptr);
    }

private:
    void release() noexcept
    {
        if (m_wrapper)
            m_wrapper->release();
    }

    IObjectWrapper* m_wrapper = nullptr;
    T* m_pointer = nullptr;
    bool m_casted = false;
};

template <typename T>
struct IsCOWPtr : std::false_type
{
};

template <typename T>
struct IsCOWPtr<COWPtr<T>> : std::true_type
{
    using Element = T;
};

template <typename T, typename U, typename Deleter, typename Cloner>
COWPtrBase::IObjectWrapper* COWPtrBase::ObjectWrapper<T, U, Deleter, Cloner>::clone() const
{
    U* const copy = m_cloner(*m_object);
    if (!copy)
        throw INVALID_ARGUMENT_EXCEPTION("No object passed.");
    COWPtr<T> handle(copy, m_deleter, m_cloner);
    if (!handle.isValid())
        throw BAD_ALLOC_EXCEPTION("Could not clone object.");
    return handle.releaseWrapper();
}

} // namespace Tarvik::DataProcessing::Utils
