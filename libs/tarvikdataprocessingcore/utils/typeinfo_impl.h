// Template half of TypeInfo: identifiers, entry look-up, typed look-up and the
// registration of a class with its bases.
#pragma once

#include <TarvikDataProcessingCore/utils/Log.h>
#include <TarvikDataProcessingCore/utils/TypeInfo.h>
#include <tarvikdataprocessingcore/utils/typeidentifier_impl.h>

#include <cstring>
#include <exception>
#include <vector>

namespace Tarvik::DataProcessing::Utils
{

template <typename T>
void TypeInfo::getTypeIdentifier(char* buffer, int* size)
{
    if (!size)
        throw INVALID_ARGUMENT_EXCEPTION("Passed size is null.");
    constexpr int length = static_cast<int>(Detail::TypeIdentifierText<T>::length);
    if (buffer)
    {
        if (*size < length + 1)
            throw INVALID_ARGUMENT_EXCEPTION("Size is too small.");
        std::memcpy(buffer, Detail::TypeIdentifierText<T>::text.data(), length + 1);
    }
    *size = length + 1;
}

template <typename T>
IRegisteredType* TypeInfo::getRegisteredType()
{
    static IRegisteredType* const entry = []
    {
        int size = 0;
        getTypeIdentifier<T>(nullptr, &size);
        std::vector<char> identifier(static_cast<size_t>(size));
        getTypeIdentifier<T>(identifier.data(), &size);
        return getTypeRegistration().getRegisteredType(GenICam::gcstring(identifier.data()));
    }();
    return entry;
}

template <typename T>
TypeInfo TypeInfo::get(bool mustExist)
{
    IRegisteredType* const entry = getRegisteredType<T>();
    if (!entry)
    {
        if (mustExist)
            throw RUNTIME_EXCEPTION("Could not get registered type.");
        return TypeInfo();
    }
    if (ITypeInfoData* const data = entry->getData())
        return TypeInfo(data);
    if (mustExist)
        throw RUNTIME_EXCEPTION("The requested type is not registered.");
    return TypeInfo();
}

// A base of a registered class: `direct` for the classes it names as bases,
// not direct for the bases of these.
template <typename B>
struct DirectBase
{
    using Type = B;
    static constexpr bool direct = true;
};

template <typename B>
struct IndirectBase
{
    using Type = B;
    static constexpr bool direct = false;
};

namespace Detail
{

inline int typeInfoCategory()
{
    static const int id = getCatId("tarvik.dataprocessing.utils.TypeInfo");
    return id;
}

template <typename T, typename Base>
void* castToBase(void* pointer)
{
    return pointer ? static_cast<typename Base::Type*>(static_cast<T*>(pointer)) : nullptr;
}

template <typename T, typename Base>
void addBase(ITypeInfoData* data)
{
    if (!data)
        throw INVALID_ARGUMENT_EXCEPTION("No type info data passed.");
    IRegisteredType* const baseEntry = TypeInfo::getRegisteredType<typename Base::Type>();
    if (!baseEntry)
        throw RUNTIME_EXCEPTION("Could not get registered type.");
    ITypeInfoData* const baseData = baseEntry->getData();
    if (!baseData)
        throw RUNTIME_EXCEPTION("Base type is not registered.");
    data->addBase(Base::direct, baseData, &castToBase<T, Base>);
}

// Registers T under `name` with its bases, in the order given. On failure the
// data made here is given back and the exception goes on.
template <typename T, typename... Bases>
void registerType(const char* name, FactoryFunction factory)
{
    IRegisteredType* const entry = TypeInfo::getRegisteredType<T>();
    if (!entry)
        throw RUNTIME_EXCEPTION("Could not get registered type.");
    ITypeInfoData* const data = TypeInfo::createTypeInfoData(name, factory);
    if (!data)
        throw RUNTIME_EXCEPTION("Could not create type info data.");
    try
    {
        (addBase<T, Bases>(data), ...);
        entry->setData(data);
    }
    catch (...)
    {
        TypeInfo::destroyTypeInfoData(data);
        throw;
    }
}

} // namespace Detail

namespace Detail
{
// Logs a failed registration; a null message stands for an exception that is
// not of the standard families. Nothing may leave the load of a library.
inline void logRegistrationFailure(const void* registrar, const char* message) noexcept
{
    try
    {
        if (message)
            createLogEntry(Severitiy_Warning, typeInfoCategory(),
                           "TypeInfo %p: Exception caught while registering a type. Message: %s", registrar,
                           message);
        else
            createLogEntry(Severitiy_Warning, typeInfoCategory(),
                           "TypeInfo %p: Unknown exception caught while registering a type.", registrar);
    }
    catch (...)
    {
    }
}
} // namespace Detail

// A static object per registered class: its construction, during the load of
// the library, registers T. A failure is logged and swallowed, so that it cannot
// stop the library from loading; T then stays unregistered.
template <typename T, typename... Bases>
class TypeRegistrar
{
public:
    explicit TypeRegistrar(const char* name, FactoryFunction factory = nullptr) noexcept
    {
        try
        {
            Detail::registerType<T, Bases...>(name, factory);
        }
        catch (const GenICam::GenericException& e)
        {
            Detail::logRegistrationFailure(this, e.GetDescription());
        }
        catch (const std::exception& e)
        {
            Detail::logRegistrationFailure(this, e.what());
        }
        catch (...)
        {
            Detail::logRegistrationFailure(this, nullptr);
        }
    }

    TypeRegistrar(const TypeRegistrar&) = delete;
    TypeRegistrar& operator=(const TypeRegistrar&) = delete;
};

} // namespace Tarvik::DataProcessing::Utils
