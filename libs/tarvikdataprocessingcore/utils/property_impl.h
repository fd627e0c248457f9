// ReadOnlyProperty<T>: a live value that is computed by its binding when read
// after a change, and kept until the binding tells that it went stale.
// BasicBinding<T>: the binding of a getter function and a changed signal that
// its owner fires.
//
// Thread safety: a property's cached value and both signals are guarded by the
// lock given at construction; the property's own signal fires outside it. The
// getter of a binding runs under the property's lock.
//
// Observers hear once for each value that was read and went stale, however often
// the binding fires between two reads: a property that holds no cached value
// stays silent.
//
// Chosen here: the framework's value types publish no named properties, so a
// non-empty path given to getVariant is refused as naming none. A binding
// connects to no signal itself and so has no connections to end.
#pragma once

#include <TarvikDataProcessingCore/utils/IReadOnlyProperty.h>
#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>
#include <tarvikdataprocessingcore/utils/signal_impl.h>

#include <GCBase/GCException.h>

#include <functional>
#include <memory>
#include <utility>

namespace Tarvik::DataProcessing::Utils
{

template <typename T>
class BasicBinding final : public IPropertyBinding<T>
{
public:
    using Getter = std::function<const COWPtr<T>()>;

    // An empty getter raises GenICam::InvalidArgumentException "Invalid functor
    // passed.", a null lock "No lockable passed.".
    BasicBinding(Getter getter, std::shared_ptr<Threading::IRecursiveLockable> lock)
        : m_getter(requireGetter(std::move(getter)))
        , m_changed(std::move(lock))
    {
    }

    BasicBinding(const BasicBinding&) = delete;
    BasicBinding& operator=(const BasicBinding&) = delete;

    const COWPtr<T> getValue() const override { return m_getter(); }
    ISignal<void()>& getChangedSignal() override { return m_changed; }

    // Tells the properties bound here that their value went stale.
    void notifyChanged() { m_changed(); }

private:
    static Getter requireGetter(Getter getter)
    {
        if (!getter)
            throw INVALID_ARGUMENT_EXCEPTION("Invalid functor passed.");
        return getter;
    }

    Getter m_getter;
    Signal<void()> m_changed;
};

template <typename T>
class ReadOnlyProperty final : public IReadOnlyPropertyT<T>
{
public:
    // A null lock raises GenICam::InvalidArgumentException "No lockable passed.",
    // then a null binding "No property binding passed.".
    ReadOnlyProperty(std::shared_ptr<IPropertyBinding<T>> binding,
                     std::shared_ptr<Threading::IRecursiveLockable> lock)
        : m_lock(requireLock(std::move(lock)))
        , m_type(TypeInfo::get<T>(true))
        , m_changed(m_lock)
        , m_binding(requireBinding(std::move(binding)))
    {
        m_connection = m_binding->getChangedSignal().connect([this] { invalidate(); });
    }

    // Ends the connection first, waiting for an invalidation in progress, so that
    // none can reach a dying property.
    ~ReadOnlyProperty() override { m_connection->disconnect(true); }

    ReadOnlyProperty(const ReadOnlyProperty&) = delete;
    ReadOnlyProperty& operator=(const ReadOnlyProperty&) = delete;

    TypeInfo getTypeInfo() const override { return m_type; }

    Variant getVariant() const override
    {
        Variant value;
        value.setData(current());
        return value;
    }

    Variant getVariant(const GenICam::gcstring& path) const override
    {
        if (path.empty())
            return getVariant();
        throw INVALID_ARGUMENT_EXCEPTION("The value has no property '%s'.", path.c_str());
    }

    ISignal<void()>& getChangedSignal() override { return m_changed; }

    COWPtr<T> getValue() const override { return current(); }
    COWPtr<T> getValue() override { return current(); }

    const T* operator->() const override
    {
        const COWPtr<T> value = current();
        return value.hasObject() ? value.get() : nullptr;
    }

    const T& operator*() const override
    {
        const T* const object = operator->();
        if (!object)
            throw RUNTIME_EXCEPTION("Cannot dereference a nullptr.");
        return *object;
    }

private:
    static std::shared_ptr<Threading::IRecursiveLockable>
    requireLock(std::shared_ptr<Threading::IRecursiveLockable> lock)
    {
        if (!lock)
            throw INVALID_ARGUMENT_EXCEPTION("No lockable passed.");
        return lock;
    }

    static std::shared_ptr<IPropertyBinding<T>> requireBinding(std::shared_ptr<IPropertyBinding<T>> binding)
    {
        if (!binding)
            throw INVALID_ARGUMENT_EXCEPTION("No property binding passed.");
        return binding;
    }

    // The cached value, computed by the binding when there is none.
    COWPtr<T> current() const
    {
        Threading::UniqueLock guard(m_lock.get());
        if (!m_cachedValue.hasObject())
        {
            m_cachedValue = m_binding->getValue();
            if (!m_cachedValue.hasObject())
                throw RUNTIME_EXCEPTION("Cannot evaluate property binding.");
        }
        return m_cachedValue;
    }

    void invalidate()
    {
        {
            Threading::UniqueLock guard(m_lock.get());
            if (!m_cachedValue.hasObject())
                return;
            m_cachedValue.reset();
        }
        m_changed();
    }

    std::shared_ptr<Threading::IRecursiveLockable> m_lock;
    mutable COWPtr<T> m_cachedValue;
    TypeInfo m_type;
    Signal<void()> m_changed;
    std::shared_ptr<IPropertyBinding<T>> m_binding;
    std::shared_ptr<IConnection> m_connection;
};

} // namespace Tarvik::DataProcessing::Utils
