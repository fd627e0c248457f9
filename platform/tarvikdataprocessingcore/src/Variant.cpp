#include <TarvikDataProcessingCore/utils/Variant.h>

#include <utility>

namespace Tarvik::DataProcessing::Utils
{

Variant::IDataWrapper::IDataWrapper() = default;
Variant::IDataWrapper::~IDataWrapper() = default;

Variant::Variant(const Variant& other)
    : m_wrapper(other.m_wrapper ? other.m_wrapper->clone() : nullptr)
{
}

Variant::Variant(Variant&& other) noexcept
    : m_wrapper(std::exchange(other.m_wrapper, nullptr))
{
}

Variant& Variant::operator=(const Variant& other)
{
    if (this != &other)
    {
        IDataWrapper* const copy = other.m_wrapper ? other.m_wrapper->clone() : nullptr;
        reset();
        m_wrapper = copy;
    }
    return *this;
}

Variant& Variant::operator=(Variant&& other) noexcept
{
    if (this != &other)
    {
        reset();
        m_wrapper = std::exchange(other.m_wrapper, nullptr);
    }
    return *this;
}

Variant::~Variant()
{
    reset();
}

void Variant::reset() noexcept
{
    delete std::exchange(m_wrapper, nullptr);
}

TypeInfo Variant::getTypeInfo() const
{
    return m_wrapper ? m_wrapper->getTypeInfo() : TypeInfo();
}

void* Variant::get(const TypeInfo& type, bool mustExist)
{
    if (!m_wrapper)
    {
        if (mustExist)
            throw RUNTIME_EXCEPTION("Variant is not valid.");
        return nullptr;
    }
    return m_wrapper->getData(type);
}

const void* Variant::get(const TypeInfo& type, bool mustExist) const
{
    if (!m_wrapper)
    {
        if (mustExist)
            throw RUNTIME_EXCEPTION("Variant is not valid.");
        return nullptr;
    }
    return std::as_const(*m_wrapper).getData(type);
}

} // namespace Tarvik::DataProcessing::Utils
