#include <TarvikViewerDataTypes2/NoValue.h>

using namespace Tarvik::DataProcessing;

NoValue::NoValue() = default;
NoValue::NoValue(const NoValue&) = default;
NoValue& NoValue::operator=(const NoValue&) = default;
NoValue::~NoValue() = default;

bool NoValue::hasError(bool) const
{
    return false;
}

std::shared_ptr<Core::IError> NoValue::getError(bool) const
{
    return nullptr;
}

Utils::TypeInfo NoValue::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<NoValue>(mustExist);
}

const void* NoValue::getRawPointer() const
{
    return this;
}

void* NoValue::getRawPointer()
{
    return this;
}
