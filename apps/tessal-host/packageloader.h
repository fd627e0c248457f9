// The package, loaded through its exports the way the viewer loads it.
//
// The library stays loaded for the life of the process (RTLD_NODELETE): the
// type registry keeps the cast functions of the node classes it registered.
#pragma once

#include <TarvikDataProcessingCore/core/INode.h>
#include <TarvikDataProcessingCore/core/IResourcePool.h>

#include <memory>
#include <string>

class PackageLoader
{
public:
    using CreateNode = Tarvik::DataProcessing::Core::
        INode* (*)(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>&);
    using DestroyNode = void (*)(Tarvik::DataProcessing::Core::INode*);

    // Raises std::runtime_error with the loader's message when the library cannot be loaded.
    explicit PackageLoader(const std::string& path);
    ~PackageLoader();
    PackageLoader(const PackageLoader&) = delete;
    PackageLoader& operator=(const PackageLoader&) = delete;

    // The export of that name; null if there is none.
    void* symbol(const char* name) const;

    template <typename F>
    F function(const char* name) const
    {
        return reinterpret_cast<F>(symbol(name));
    }

    int interfaceVersion() const;
    // The manifest text, fetched through create_StaticInfo and given back through destroy_Info.
    std::string manifest() const;

    // A node made through create_<name> and destroyed through destroy_<name>;
    // raises std::runtime_error when the package has no such factory.
    std::shared_ptr<Tarvik::DataProcessing::Core::INode>
    createNode(const std::string& name,
               std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool> pool = nullptr) const;

private:
    void* m_handle;
};
