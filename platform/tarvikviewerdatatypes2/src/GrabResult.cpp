#include <TarvikViewerDataTypes2/GrabResult.h>

#include <GCBase/GCException.h>

using namespace Tarvik::DataProcessing;

GrabResult::GrabResult(const GrabResultDescription& description, std::shared_ptr<Core::IBuffer> buffer)
    : m_description(description)
    , m_buffer(std::move(buffer))
{
}

GrabResult::GrabResult(std::shared_ptr<Core::IError> error)
    : m_error(std::move(error))
{
    if (!m_error)
        throw INVALID_ARGUMENT_EXCEPTION("A grab result in error state needs an error.");
}

GrabResult::GrabResult(const GrabResult&) = default;
GrabResult& GrabResult::operator=(const GrabResult&) = default;
GrabResult::~GrabResult() = default;

bool GrabResult::hasError(bool) const
{
    return m_error != nullptr;
}

std::shared_ptr<Core::IError> GrabResult::getError(bool) const
{
    return m_error;
}

size_t GrabResult::getBufferSize() const
{
    return m_buffer ? m_buffer->getSize() : 0;
}

Utils::TypeInfo GrabResult::getTypeInfo(bool mustExist) const
{
    return Utils::TypeInfo::get<GrabResult>(mustExist);
}

const void* GrabResult::getRawPointer() const
{
    return this;
}

void* GrabResult::getRawPointer()
{
    return this;
}
