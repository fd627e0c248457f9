// The "@Tessal" node map of a node with parameters, and the setter pattern that
// keeps it informed. The node keeps a shared_ptr to each relay, hands the
// relays to its adapter through publishParameters at the end of its
// constructor, and changes a parameter only through storeAndNotify.
#pragma once

#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapter.h>
#include <AnythingToNodeMapAdapter/CategoryParameterPort.h>

#include <TarvikDataProcessingCore/threading/RecursiveCLock.h>

#include <tarvikdataprocessingcore/threading/uniquelock_impl.h>

#include <memory>
#include <utility>
#include <vector>

namespace TarvikViewerTessalPackage::Detail
{

using NodeMaps = std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>>;

// Publishes `ports` as features under the one category "Root", in the order
// given, and builds the node map on the node's lock: a client's access through
// the map then takes the lock that the accessors take.
template <typename... Ports>
void publishParameters(AnythingToNodeMapAdapter::CAnythingToNodeMapAdapter& adapter,
                       Tarvik::DataProcessing::Threading::RecursiveCLock& lock,
                       const std::shared_ptr<Ports>&... ports)
{
    adapter.addParameterPort(std::make_shared<AnythingToNodeMapAdapter::CategoryParameterPort>("Root"), 0);
    (
        [&]
        {
            adapter.addParameterPort(ports, 0);
            adapter.addRelation("Feature", "Root", ports->getName());
        }(),
        ...);
    adapter.createNodeMap(&lock.getLock(), "", "");
}

// The node's one map, as its INodeMapContainer lists it.
inline NodeMaps tessalNodeMaps(const AnythingToNodeMapAdapter::CAnythingToNodeMapAdapter& adapter)
{
    return {{"@Tessal", adapter.getNodeMap()}};
}

// The setter of a published parameter: under the node's lock, a value that
// differs from the stored one (a NaN differs from everything) is stored and
// told to the port's observer, which thus runs inside the lock. An equal value
// tells nobody.
template <typename T, typename Port>
void storeAndNotify(Tarvik::DataProcessing::Threading::IRecursiveLockable& lock, T& field, T value,
                    Port& port)
{
    Tarvik::DataProcessing::Threading::ScopedLock guard(lock);
    if (value == field)
        return;
    field = value;
    port.notifyObserver();
}

} // namespace TarvikViewerTessalPackage::Detail
