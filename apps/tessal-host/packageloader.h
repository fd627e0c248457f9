// The package, loaded through its exports the way the viewer loads it: the
// interface version is checked and the manifest parsed when the library loads,
// and nodes are made and given back by module name through create_<Name> and
// destroy_<Name>. Nothing of the package is linked in.
//
// The library stays loaded for the life of the process (RTLD_NODELETE): the
// type registry keeps the cast functions of the node classes it registered.
#pragma once

#include <TarvikDataProcessingCore/core/INode.h>
#include <TarvikDataProcessingCore/core/IResourcePool.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// The package cannot be used: the message names the library and what is wrong.
class PackageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

class PackageLoader
{
public:
    using CreateNode = Tarvik::DataProcessing::Core::
        INode* (*)(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>&);
    using DestroyNode = void (*)(Tarvik::DataProcessing::Core::INode*);

    // The export table version this host speaks.
    static constexpr int supportedInterfaceVersion = 2;

    // Loads the library, checks its interface version and parses its manifest;
    // raises PackageError when any of that fails.
    explicit PackageLoader(const std::string& path);
    ~PackageLoader();
    PackageLoader(const PackageLoader&) = delete;
    PackageLoader& operator=(const PackageLoader&) = delete;

    const std::string& path() const { return m_path; }

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
    // The "Name" of each module record of the manifest, in its order.
    const std::vector<std::string>& moduleNames() const { return m_moduleNames; }
    bool hasModule(const std::string& name) const;

    // A node made through create_<name> and destroyed through destroy_<name>;
    // raises PackageError when the manifest names no such module or the package
    // lacks one of the two exports.
    std::shared_ptr<Tarvik::DataProcessing::Core::INode>
    createNode(const std::string& name,
               std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool> pool = nullptr) const;

private:
    [[noreturn]] void fail(const std::string& what) const;
    template <typename F>
    F requiredFunction(const std::string& name) const;

    std::string m_path;
    void* m_handle;
    std::vector<std::string> m_moduleNames;
};
