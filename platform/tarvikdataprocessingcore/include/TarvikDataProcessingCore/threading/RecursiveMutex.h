// The lock of a value object or a signal.
#pragma once

#include <TarvikDataProcessingCore/threading/IRecursiveLockable.h>

#include <mutex>

namespace Tarvik::DataProcessing::Threading
{

class TDPC_API RecursiveMutex : public IRecursiveLockable
{
public:
    RecursiveMutex();
    ~RecursiveMutex() override;
    RecursiveMutex(const RecursiveMutex&) = delete;
    RecursiveMutex& operator=(const RecursiveMutex&) = delete;

    void lock() override;
    void unlock() override;

private:
    std::recursive_mutex m_mutex;
};

} // namespace Tarvik::DataProcessing::Threading
