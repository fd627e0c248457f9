// The framework's run-time type system.
//
// A type is known by its identifier text ("class Tarvik::DataProcessing::Core::IValue"),
// which is the same in every library, so that a value made in one library is
// recognised in another. The registry records each type's bases with cast
// functions, so that a pointer can be cast across library borders.
//
// The registry is filled while libraries load, on the loader's thread, and only
// read afterwards; its look-ups are thread-safe.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <GCBase/GCException.h>
#include <GCBase/GCString.h>

namespace Tarvik::DataProcessing::Utils
{

class Variant;

// Takes a pointer to the derived object and gives the pointer to the base within
// it; null for null.
using CastFunction = void* (*)(void*);
// Makes a Variant holding a default object of the type; may be null.
using FactoryFunction = Variant (*)();

// What is known of one type: its name and its bases.
class TDPC_API ITypeInfoData
{
public:
    virtual const char* getName() const = 0;
    virtual FactoryFunction getFactory() const = 0;
    virtual void addBase(bool direct, ITypeInfoData* base, CastFunction cast) = 0;

protected:
    virtual ~ITypeInfoData();
};

// One entry of the registry; its data stays null until the type is registered.
class TDPC_API IRegisteredType
{
public:
    virtual void setData(ITypeInfoData* data) = 0;
    virtual ITypeInfoData* getData() const = 0;

protected:
    virtual ~IRegisteredType();
};

class TDPC_API ITypeRegistration
{
public:
    // The entry of an identifier, created on first request; null if none can be made.
    virtual IRegisteredType* getRegisteredType(const GenICam::gcstring& identifier) = 0;

protected:
    virtual ~ITypeRegistration();
};

class TDPC_API TypeInfo
{
public:
    TypeInfo() noexcept = default;
    explicit TypeInfo(ITypeInfoData* data) noexcept
        : m_data(data)
    {
    }

    bool isValid() const noexcept { return m_data != nullptr; }
    ITypeInfoData* getData() const noexcept { return m_data; }
    // The registered name, empty for an invalid type.
    GenICam::gcstring getName() const;
    // True if a value of this type can be seen as `other`: the same type or one of its bases.
    bool canConvert(const TypeInfo& other) const;

    friend bool operator==(const TypeInfo& a, const TypeInfo& b) noexcept { return a.m_data == b.m_data; }

    static ITypeRegistration& getTypeRegistration();
    // Null when no data can be made; the caller gives it back with destroyTypeInfoData
    // unless it hands it to a registry entry.
    static ITypeInfoData* createTypeInfoData(const GenICam::gcstring& name, FactoryFunction factory);
    static void destroyTypeInfoData(ITypeInfoData* data);

    // Two-call protocol: with a null buffer only *size is set to the length of the
    // identifier plus its zero byte; with a buffer of at least that size the
    // identifier is copied too.
    template <typename T>
    static void getTypeIdentifier(char* buffer, int* size);

    // The registry entry of T, asked for once and kept.
    template <typename T>
    static IRegisteredType* getRegisteredType();

    template <typename T>
    static TypeInfo get(bool mustExist);

private:
    ITypeInfoData* m_data = nullptr;
};

// Sees `pointer`, an object of `type`, as `target`, one of its bases, by the
// recorded cast functions. Null when `target` is no base of `type` or the
// pointer is null.
TDPC_API void* type_cast(void* pointer, const TypeInfo& type, const TypeInfo& target);
TDPC_API const void* type_cast(const void* pointer, const TypeInfo& type, const TypeInfo& target);

} // namespace Tarvik::DataProcessing::Utils

#include <tarvikdataprocessingcore/utils/typeinfo_impl.h>
