#include "packageloader.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <dlfcn.h>

PackageLoader::PackageLoader(const std::string& path)
    : m_path(path)
    , m_handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE))
{
    if (!m_handle)
        throw PackageError("cannot load the package " + path + ": " + dlerror());
    try
    {
        const int version = interfaceVersion();
        if (version != supportedInterfaceVersion)
            fail("interface version " + std::to_string(version) + ", this host needs " +
                 std::to_string(supportedInterfaceVersion));
        nlohmann::json manifestJson;
        try
        {
            manifestJson = nlohmann::json::parse(manifest());
        }
        catch (const nlohmann::json::exception& e)
        {
            fail(std::string("the manifest does not parse: ") + e.what());
        }
        const auto modules = manifestJson.find("Modules");
        if (modules == manifestJson.end() || !modules->is_array())
            fail("the manifest has no \"Modules\" array");
        for (const auto& module : *modules)
        {
            const auto name = module.find("Name");
            if (name == module.end() || !name->is_string())
                fail("a module record of the manifest has no \"Name\"");
            m_moduleNames.push_back(name->get<std::string>());
        }
    }
    catch (...)
    {
        dlclose(m_handle);
        throw;
    }
}

PackageLoader::~PackageLoader()
{
    dlclose(m_handle);
}

void PackageLoader::fail(const std::string& what) const
{
    throw PackageError("the package " + m_path + " cannot be used: " + what);
}

void* PackageLoader::symbol(const char* name) const
{
    return dlsym(m_handle, name);
}

template <typename F>
F PackageLoader::requiredFunction(const std::string& name) const
{
    const auto found = function<F>(name.c_str());
    if (!found)
        fail("it has no export " + name);
    return found;
}

int PackageLoader::interfaceVersion() const
{
    return requiredFunction<int (*)()>("get_InterfaceVersion")();
}

std::string PackageLoader::manifest() const
{
    const auto create = requiredFunction<char* (*)()>("create_StaticInfo");
    const auto destroy = requiredFunction<void (*)(char**)>("destroy_Info");
    char* block = create();
    if (!block)
        fail("create_StaticInfo gave no manifest");
    std::string text(block);
    destroy(&block);
    return text;
}

bool PackageLoader::hasModule(const std::string& name) const
{
    return std::find(m_moduleNames.begin(), m_moduleNames.end(), name) != m_moduleNames.end();
}

std::shared_ptr<Tarvik::DataProcessing::Core::INode>
PackageLoader::createNode(const std::string& name,
                          std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool> pool) const
{
    if (!hasModule(name))
        fail("its manifest has no module \"" + name + "\"");
    const auto create = requiredFunction<CreateNode>("create_" + name);
    const auto destroy = requiredFunction<DestroyNode>("destroy_" + name);
    if (!pool)
        pool = std::make_shared<Tarvik::DataProcessing::Core::ResourcePool>();
    return std::shared_ptr<Tarvik::DataProcessing::Core::INode>(create(pool), destroy);
}
