// Where the build put the package.
#pragma once

#include <string>

inline std::string builtPackagePath()
{
    return std::string(TESSAL_LIBRARY_DIR) + "/libTarvikViewerTessalPackage.so";
}
