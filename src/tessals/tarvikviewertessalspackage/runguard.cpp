#include "runguard.h"

#include <TarvikDataProcessingCore/utils/Log.h>

#include <cstring>

namespace TarvikViewerTessalPackage::Detail
{

const char* sourceBaseName(const char* path) noexcept
{
    const char* const lastBackslash = std::strrchr(path, '\\');
    return lastBackslash ? lastBackslash + 1 : path;
}

void RunChecks::fail(const void* node, const char* message, const char* file, int line) const
{
    const char* const baseName = sourceBaseName(file);
    Tarvik::DataProcessing::Utils::createLogEntry(Tarvik::DataProcessing::Utils::Severitiy_Error,
                                                  m_category(), "%s %p: %s failed. Message: \"%s\" (%s:%i)",
                                                  m_nodeClass, node, m_function, message, baseName, line);
    throw GenICam::InvalidArgumentException(message, baseName, static_cast<unsigned>(line));
}

std::string currentFailureText()
{
    try
    {
        throw;
    }
    catch (const GenICam::GenericException& e)
    {
        return e.GetDescription();
    }
    catch (const std::exception& e)
    {
        return e.what();
    }
    catch (...)
    {
        return "Unknown exception occurred.";
    }
}

} // namespace TarvikViewerTessalPackage::Detail
