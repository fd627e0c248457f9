// GenApi::IPortConstruct: what the node map tells a client's port when it
// connects it to a Port node.
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/IPort.h>
#include <GenApi/Types.h>

namespace GenApi
{

class GENAPI_API IPortConstruct : virtual public IPort
{
public:
    ~IPortConstruct() override;

    // Hands the port the Port node it now serves; the Port node is also an INode.
    virtual void SetPortImpl(IPort* pPort) = 0;
    // Yes if the node map must swap the byte order of every access.
    virtual EYesNo GetSwapEndianess() = 0;
};

} // namespace GenApi
