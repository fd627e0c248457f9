// A block of memory that an image adopts or is given.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <cstddef>
#include <memory>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API IBuffer
{
public:
    virtual ~IBuffer();
    virtual void* getData() = 0;
    virtual const void* getData() const = 0;
    virtual size_t getSize() const = 0;
};

class TDPC_API IBufferProvider
{
public:
    virtual ~IBufferProvider();
    // A buffer of `size` bytes; raises GenICam::BadAllocException when none can be had.
    virtual std::shared_ptr<IBuffer> allocate(size_t size) = 0;
};

} // namespace Tarvik::DataProcessing::Core
