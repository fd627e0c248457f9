// GenApi::IPortReplay: a port that can replay a recorded write list.
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/IPort.h>

namespace GenApi
{

class IPortWriteList;

class GENAPI_API IPortReplay : virtual public IPort
{
public:
    ~IPortReplay() override;

    // Replays pPortRecorder (if not null) through this port, then, with
    // Invalidate, invalidates the Port node and everything that depends on it.
    virtual void Replay(IPortWriteList* pPortRecorder, bool Invalidate = true) = 0;
};

} // namespace GenApi
