// GenApi::IBase: what every node interface and every port has in common.
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/Types.h>

namespace GenApi
{

class GENAPI_API IBase
{
public:
    virtual ~IBase();

    // NI, NA, WO, RO or RW as of now. For a node: NA if its pIsAvailable reads
    // 0, else the mode of its value (its pValue, its register's AccessMode
    // combined with the port's mode, RW for a constant), without writing while
    // its pIsLocked reads non-zero. A pIsAvailable that cannot be read counts as
    // 0; a pIsLocked that cannot be read counts as set, so that a write is
    // refused rather than risked.
    virtual EAccessMode GetAccessMode() const = 0;
};

} // namespace GenApi
