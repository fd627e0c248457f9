#include <GenApi/NodeMapFactory.h>

#include "DocumentLoader.h"
#include "NodeMap.h"

#include <GCBase/GCException.h>

#include <optional>
#include <string>

namespace GenApi
{

struct CNodeMapFactory::Impl
{
    EContentType_t contentType = ContentType_Xml;
    bool suppressStrings = false;
    std::optional<std::string> document; // empty after release or without a document
    std::optional<bool> loadable;        // the verdict of IsLoaded, once asked

    INodeMap* Create(CLock* lock, const GenICam::gcstring& deviceName, bool release)
    {
        if (!document)
            throw RUNTIME_EXCEPTION("Node map factory holds no register description");
        if (contentType != ContentType_Xml)
            throw RUNTIME_EXCEPTION("Node map factory reads plain XML only, not content type %d",
                                    static_cast<int>(contentType));
        std::unique_ptr<Detail::CNodeMap> map =
            Detail::LoadDocument(document->data(), document->size(), lock, deviceName, suppressStrings);
        if (release)
            document.reset();
        return map.release();
    }
};

CNodeMapFactory::CNodeMapFactory()
    : m_impl(std::make_shared<Impl>())
{
}

CNodeMapFactory::CNodeMapFactory(EContentType_t ContentType, const void* pData, size_t DataSize,
                                 ECacheUsage_t /*CacheUsage*/, bool SuppressStringsOnLoad)
    : CNodeMapFactory()
{
    if (pData == nullptr && DataSize != 0)
        throw INVALID_ARGUMENT_EXCEPTION("Node map factory got no data for %zu bytes", DataSize);
    m_impl->contentType = ContentType;
    m_impl->suppressStrings = SuppressStringsOnLoad;
    m_impl->document = std::string(static_cast<const char*>(pData), DataSize);
}

CNodeMapFactory::CNodeMapFactory(const CNodeMapFactory& other) = default;
CNodeMapFactory& CNodeMapFactory::operator=(const CNodeMapFactory& other) = default;
CNodeMapFactory::~CNodeMapFactory() = default;

INodeMap* CNodeMapFactory::CreateNodeMap(const GenICam::gcstring& DeviceName,
                                         bool DoReleaseCameraDescriptionFileData)
{
    return m_impl->Create(nullptr, DeviceName, DoReleaseCameraDescriptionFileData);
}

INodeMap* CNodeMapFactory::CreateNodeMap(CLock& UserProvidedLock, const GenICam::gcstring& DeviceName,
                                         bool DoReleaseCameraDescriptionFileData)
{
    return m_impl->Create(&UserProvidedLock, DeviceName, DoReleaseCameraDescriptionFileData);
}

INodeMap* CNodeMapFactory::CreateEmptyNodeMap()
{
    return new Detail::CNodeMap(nullptr, "Device");
}

bool CNodeMapFactory::IsLoaded() const
{
    if (!m_impl->loadable)
    {
        try
        {
            if (!m_impl->document)
                return false;
            // A trial build: the document is valid only if a map can be made of it.
            delete dynamic_cast<Detail::CNodeMap*>(m_impl->Create(nullptr, "Device", false));
            m_impl->loadable = true;
        }
        catch (const GenICam::GenericException&)
        {
            m_impl->loadable = false;
        }
    }
    return *m_impl->loadable;
}

void CNodeMapFactory::ReleaseCameraDescriptionFileData()
{
    m_impl->document.reset();
}

} // namespace GenApi
