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

    // NI, NA, WO, RO or RW as of now; for a node this follows its pIsImplemented,
    // pIsAvailable, pIsLocked, its registers and the port behind them.
    virtual EAccessMode GetAccessMode() const = 0;
};

} // namespace GenApi
