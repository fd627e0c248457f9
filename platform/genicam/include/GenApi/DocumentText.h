// The register description a node map was built from. This runtime keeps the
// text of every map that a CNodeMapFactory builds, so that a tool can show a
// node map as its device describes it; node maps in general offer no such text.
#pragma once

#include <GCBase/GCString.h>
#include <GenApi/GenApiExport.h>

namespace GenApi
{

class INodeMap;

// The document of `nodeMap`; empty for null and for a map of another origin
// (CreateEmptyNodeMap, or a map that another runtime made).
GENAPI_API GenICam::gcstring GetDocumentText(const INodeMap* nodeMap);

} // namespace GenApi
