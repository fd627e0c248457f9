// GenApi::CNodeMapFactory: builds node maps from a GenApi 1.1 register
// description. The factory keeps the document; parsing happens on the first
// CreateNodeMap (or IsLoaded), and every CreateNodeMap builds a fresh map.
//
//     CNodeMapFactory factory(ContentType_Xml, text.c_str(), text.length(), CacheUsage_Ignore, false);
//     CNodeMapRef ref;
//     ref = factory.CreateNodeMap(lock, "Device", true);
//
// Node classes: Category, Integer, IntReg, Boolean, Enumeration with EnumEntry,
// Float, FloatReg and Port. A document with another node class (Command,
// String, SwissKnife, Group ...) is refused, as is an element a node class of
// this runtime does not read. The document comes from memory only: the node
// maps of this system are generated, not read from files.
//
// A document that is not well-formed XML, is not a register description of
// schema version 1.1, names a node that does not exist, holds two nodes of one
// name, has a register without a port, or is otherwise wrong, is refused with a
// GenICam exception (RuntimeException, PropertyException) whose text names the
// problem and the node. Nothing of a refused map remains. Copies of a factory
// share the document. A factory is not thread-safe; the maps it makes are.
#pragma once

#include <GCBase/GCString.h>
#include <GCBase/Synch.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/Types.h>

#include <cstddef>
#include <memory>

namespace GenApi
{

class INodeMap;

class GENAPI_API CNodeMapFactory
{
public:
    // A factory without a document; CreateNodeMap on it throws.
    CNodeMapFactory();
    // Copies DataSize bytes of the document from memory.
    CNodeMapFactory(EContentType_t ContentType, const void* pData, size_t DataSize,
                    ECacheUsage_t CacheUsage = CacheUsage_Automatic, bool SuppressStringsOnLoad = false);
    CNodeMapFactory(const CNodeMapFactory& other);
    CNodeMapFactory& operator=(const CNodeMapFactory& other);
    ~CNodeMapFactory();

    // A new map of all nodes of the document with a lock of its own. The caller
    // owns it; hand it to a CNodeMapRef, which destroys it with the last reference.
    // DoReleaseCameraDescriptionFileData drops the document after the map is built.
    INodeMap* CreateNodeMap(const GenICam::gcstring& DeviceName = "Device",
                            bool DoReleaseCameraDescriptionFileData = true);
    // The same, guarded by UserProvidedLock, which must outlive the map.
    INodeMap* CreateNodeMap(CLock& UserProvidedLock, const GenICam::gcstring& DeviceName = "Device",
                            bool DoReleaseCameraDescriptionFileData = true);

    // A map without nodes, with a lock of its own and the device name "Device".
    static INodeMap* CreateEmptyNodeMap();

    // Parses the document if that has not happened; true if it is a valid
    // description. Does not throw for a refused document.
    bool IsLoaded() const;
    // Drops the document; later CreateNodeMap calls throw.
    void ReleaseCameraDescriptionFileData();

private:
    struct Impl;
    std::shared_ptr<Impl> m_impl;
};

} // namespace GenApi
