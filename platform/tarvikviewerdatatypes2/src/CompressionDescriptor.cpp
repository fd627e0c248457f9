#include <TarvikViewerDataTypes2/CompressionDescriptor.h>

using namespace Tarvik::DataProcessing;

CompressionDescriptor::CompressionDescriptor() = default;

CompressionDescriptor::CompressionDescriptor(std::vector<uint8_t> bytes)
    : m_bytes(std::move(bytes))
{
}

CompressionDescriptor::CompressionDescriptor(const CompressionDescriptor&) = default;
CompressionDescriptor& CompressionDescriptor::operator=(const CompressionDescriptor&) = default;
CompressionDescriptor::~CompressionDescriptor() = default;

bool CompressionDescriptor::hasError(bool) const
{
    return false;
}

std::shared_ptr<Core::IError> CompressionDescriptor::getError(bool) const
{
    return nullptr;
}

Utils::TypeInfo CompressionDescriptor::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<CompressionDescriptor>(mustExist);
}

const void* CompressionDescriptor::getRawPointer() const
{
    return this;
}

void* CompressionDescriptor::getRawPointer()
{
    return this;
}
