#include "packageloader.h"

#include <dlfcn.h>
#include <stdexcept>

PackageLoader::PackageLoader(const std::string& path)
    : m_handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE))
{
    if (!m_handle)
        throw std::runtime_error(std::string("cannot load the package: ") + dlerror());
}

PackageLoader::~PackageLoader()
{
    dlclose(m_handle);
}

void* PackageLoader::symbol(const char* name) const
{
    return dlsym(m_handle, name);
}

int PackageLoader::interfaceVersion() const
{
    const auto get = function<int (*)()>("get_InterfaceVersion");
    if (!get)
        throw std::runtime_error("the package has no get_InterfaceVersion");
    return get();
}

std::string PackageLoader::manifest() const
{
    const auto create = function<char* (*)()>("create_StaticInfo");
    const auto destroy = function<void (*)(char**)>("destroy_Info");
    if (!create || !destroy)
        throw std::runtime_error("the package has no manifest exports");
    char* block = create();
    if (!block)
        throw std::runtime_error("the package gave no manifest");
    std::string text(block);
    destroy(&block);
    return text;
}

std::shared_ptr<Tarvik::DataProcessing::Core::INode>
PackageLoader::createNode(const std::string& name,
                          std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool> pool) const
{
    const auto create = function<CreateNode>(("create_" + name).c_str());
    const auto destroy = function<DestroyNode>(("destroy_" + name).c_str());
    if (!create || !destroy)
        throw std::runtime_error("the package has no factory for " + name);
    if (!pool)
        pool = std::make_shared<Tarvik::DataProcessing::Core::ResourcePool>();
    return std::shared_ptr<Tarvik::DataProcessing::Core::INode>(create(pool), destroy);
}
