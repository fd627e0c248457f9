// The interface of a node that publishes its parameters as GenApi node maps.
// Its head repeats the four operations of IObject; a node forwards them to its
// primary implementations.
#pragma once

#include <TarvikDataProcessingCore/utils/ISignal.h>
#include <TarvikDataProcessingCore/utils/TypeInfo.h>

#include <GCBase/GCString.h>

#include <utility>
#include <vector>

namespace GenApi
{
class INodeMap;
}

namespace Tarvik::DataProcessing::Core
{

class TDPC_API INodeMapContainer
{
public:
    virtual Utils::TypeInfo getTypeInfo(bool mustExist) const = 0;
    virtual const void* getRawPointer() const = 0;
    virtual void* getRawPointer() = 0;
    virtual ~INodeMapContainer();
    // Each map by name, such as "@Tessal"; owned by the node and valid while it lives.
    virtual std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> getNodeMaps() = 0;
    // Fired when the set of maps changes.
    virtual Utils::ISignal<void()>& getNodeMapsChangedSignal() = 0;
};

} // namespace Tarvik::DataProcessing::Core
