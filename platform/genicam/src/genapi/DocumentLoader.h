// Builds a node map from the text of a GenApi 1.1 register description.
#pragma once

#include <GCBase/GCString.h>
#include <GCBase/Synch.h>

#include <cstddef>
#include <memory>

namespace GenApi::Detail
{

class CNodeMap;

// A complete map, or a GenICam exception that names the problem and the node;
// nothing of a refused document remains. With userLock null the map has a lock
// of its own. suppressStrings leaves tool tips, descriptions and display names out.
std::unique_ptr<CNodeMap> LoadDocument(const char* text, size_t length, CLock* userLock,
                                       const GenICam::gcstring& deviceName, bool suppressStrings);

} // namespace GenApi::Detail
