// The one registry of types of the process.
#include <TarvikDataProcessingCore/utils/TypeInfo.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace Tarvik::DataProcessing::Utils
{

ITypeInfoData::~ITypeInfoData() = default;
IRegisteredType::~IRegisteredType() = default;
ITypeRegistration::~ITypeRegistration() = default;

namespace
{

struct BaseRecord
{
    bool direct;
    ITypeInfoData* base;
    CastFunction cast;
};

class TypeInfoData final : public ITypeInfoData
{
public:
    TypeInfoData(std::string name, FactoryFunction factory)
        : m_name(std::move(name))
        , m_factory(factory)
    {
    }
    ~TypeInfoData() override = default;

    const char* getName() const override { return m_name.c_str(); }
    FactoryFunction getFactory() const override { return m_factory; }
    void addBase(bool direct, ITypeInfoData* base, CastFunction cast) override
    {
        if (!base || !cast)
            throw INVALID_ARGUMENT_EXCEPTION("Base type data and cast function must not be null.");
        m_bases.push_back({direct, base, cast});
    }
    const std::vector<BaseRecord>& bases() const { return m_bases; }

private:
    std::string m_name;
    FactoryFunction m_factory;
    std::vector<BaseRecord> m_bases;
};

class RegisteredType final : public IRegisteredType
{
public:
    ~RegisteredType() override = default;
    void setData(ITypeInfoData* data) override { m_data.store(data, std::memory_order_release); }
    ITypeInfoData* getData() const override { return m_data.load(std::memory_order_acquire); }

private:
    std::atomic<ITypeInfoData*> m_data{nullptr};
};

class TypeRegistration final : public ITypeRegistration
{
public:
    IRegisteredType* getRegisteredType(const GenICam::gcstring& identifier) override
    {
        if (identifier.empty())
            return nullptr;
        std::lock_guard guard(m_mutex);
        std::unique_ptr<RegisteredType>& entry = m_entries[identifier.str()];
        if (!entry)
            entry = std::make_unique<RegisteredType>();
        return entry.get();
    }

private:
    std::mutex m_mutex;
    std::unordered_map<std::string, std::unique_ptr<RegisteredType>> m_entries;
};

const TypeInfoData* dataOf(const TypeInfo& type)
{
    return static_cast<const TypeInfoData*>(type.getData());
}

// Depth-first over the recorded bases, each cast taken from the type that recorded it.
void* castWithin(void* pointer, const TypeInfoData* from, const ITypeInfoData* target)
{
    if (from == target)
        return pointer;
    for (const BaseRecord& record : from->bases())
        if (record.base == target)
            return record.cast(pointer);
    for (const BaseRecord& record : from->bases())
        if (record.direct)
            if (void* const found =
                    castWithin(record.cast(pointer), static_cast<const TypeInfoData*>(record.base), target))
                return found;
    return nullptr;
}

bool isBaseOrSelf(const TypeInfoData* from, const ITypeInfoData* target)
{
    if (from == target)
        return true;
    for (const BaseRecord& record : from->bases())
        if (record.base == target ||
            (record.direct && isBaseOrSelf(static_cast<const TypeInfoData*>(record.base), target)))
            return true;
    return false;
}

} // namespace

GenICam::gcstring TypeInfo::getName() const
{
    return m_data ? GenICam::gcstring(m_data->getName()) : GenICam::gcstring();
}

bool TypeInfo::canConvert(const TypeInfo& other) const
{
    return m_data && other.m_data && isBaseOrSelf(dataOf(*this), other.m_data);
}

ITypeRegistration& TypeInfo::getTypeRegistration()
{
    // Never destroyed: libraries keep pointers to its entries in statics of their
    // own, and may look types up while they are torn down at exit.
    static TypeRegistration* const registry = new TypeRegistration;
    return *registry;
}

ITypeInfoData* TypeInfo::createTypeInfoData(const GenICam::gcstring& name, FactoryFunction factory)
{
    if (name.empty())
        return nullptr;
    return new (std::nothrow) TypeInfoData(name.str(), factory);
}

void TypeInfo::destroyTypeInfoData(ITypeInfoData* data)
{
    delete static_cast<TypeInfoData*>(data);
}

void* type_cast(void* pointer, const TypeInfo& type, const TypeInfo& target)
{
    if (!pointer || !type.isValid() || !target.isValid())
        return nullptr;
    return castWithin(pointer, dataOf(type), target.getData());
}

const void* type_cast(const void* pointer, const TypeInfo& type, const TypeInfo& target)
{
    return type_cast(const_cast<void*>(pointer), type, target);
}

} // namespace Tarvik::DataProcessing::Utils
