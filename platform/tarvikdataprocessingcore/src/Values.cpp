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

} // namespace Core
} // namespace Tarvik::DataProcessing
