// The lock of a node: one recursive GenApi::CLock, shared by the node base, the
// node's parameter accessors and its node map, so that all three exclude each
// other without a lock order to keep.
#pragma once

#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>

#include <GCBase/Synch.h>

namespace Tarvik::DataProcessing::Threading
{

class TDPC_API RecursiveCLock : public IRecursiveLockable
{
public:
    RecursiveCLock();
    ~RecursiveCLock() override;
    RecursiveCLock(const RecursiveCLock&) = delete;
    RecursiveCLock& operator=(const RecursiveCLock&) = delete;

    void lock() override;
    void unlock() override;

    // The lock to create the node's node map on.
    GenApi::CLock& getLock();

private:
    GenApi::CLock m_lock;
};

} // namespace Tarvik::DataProcessing::Threading
