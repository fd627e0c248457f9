// Read-only properties: a live value that tells observers when it goes stale,
// and the binding that computes it.
//
// IReadOnlyProperty is the untyped view that the framework uses; the typed view
// IReadOnlyPropertyT<T> gives the value as a COWPtr<T>. Both getters of the
// untyped view are called getVariant, so that they stand beside the typed
// getValue of the derived interface without hiding it.
#pragma once

#include <TarvikDataProcessingCore/utils/ISignal.h>
#include <TarvikDataProcessingCore/utils/TypeInfo.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <GCBase/GCString.h>

namespace Tarvik::DataProcessing::Utils
{

class TDPC_API IReadOnlyProperty
{
public:
    IReadOnlyProperty();
    virtual ~IReadOnlyProperty();
    // The type of the value.
    virtual TypeInfo getTypeInfo() const = 0;
    // A Variant of the current value; the same as getVariant with an empty path.
    virtual Variant getVariant() const = 0;
    // The current value, or for a non-empty `path` the named property of it.
    virtual Variant getVariant(const GenICam::gcstring& path) const = 0;
    // Fires, outside the property's lock, when a value that was read went stale.
    virtual ISignal<void()>& getChangedSignal() = 0;
};

template <typename T>
class IReadOnlyPropertyT : public virtual IReadOnlyProperty
{
public:
    // A copy of the current value.
    virtual COWPtr<T> getValue() const = 0;
    virtual COWPtr<T> getValue() = 0;
    // The current value's object; null when the value holds none.
    virtual const T* operator->() const = 0;
    // Raises GenICam::RuntimeException "Cannot dereference a nullptr." on a null value.
    virtual const T& operator*() const = 0;
};

// The source of a property's value: computes it on request and tells when it changed.
template <typename T>
class IPropertyBinding
{
public:
    virtual ~IPropertyBinding() = default;
    virtual const COWPtr<T> getValue() const = 0;
    virtual ISignal<void()>& getChangedSignal() = 0;
};

} // namespace Tarvik::DataProcessing::Utils
