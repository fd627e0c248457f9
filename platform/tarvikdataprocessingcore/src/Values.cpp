#include <TarvikDataProcessingCore/core/ScalarValues.h>

namespace Tarvik::DataProcessing
{

Utils::IObject::~IObject() = default;

namespace Core
{

IValue::~IValue() = default;
IInteger::~IInteger() = default;
IFloat::~IFloat() = default;
IBoolean::~IBoolean() = default;
IString::~IString() = default;
Integer::~Integer() = default;
Float::~Float() = default;
Boolean::~Boolean() = default;
String::~String() = default;

ValueBase::ValueBase(std::shared_ptr<Threading::RecursiveMutex> lock, std::shared_ptr<IError> error)
    : m_lock(lock ? std::move(lock) : std::make_shared<Threading::RecursiveMutex>())
    , m_error(std::move(error))
{
}

ValueBase::~ValueBase() = default;

void ValueBase::throwIfError(const char* what) const
{
    if (m_error)
        throw LOGICAL_ERROR_EXCEPTION("Cannot %s the data of a value in error state: %s", what,
                                      m_error->getDescription().c_str());
}

} // namespace Core
} // namespace Tarvik::DataProcessing
