// Heap buffers aligned for vector loads and stores.
//
// Chosen here: 64-byte alignment (a cache line, and enough for any SIMD width of
// x86-64), and a size of zero gives a valid, empty buffer. Thread-safe.
#pragma once

#include <TarvikDataProcessingCore/core/IBuffer.h>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API AlignedBufferProvider : public IBufferProvider
{
public:
    static constexpr size_t alignment = 64;

    ~AlignedBufferProvider() override;
    std::shared_ptr<IBuffer> allocate(size_t size) override;
};

} // namespace Tarvik::DataProcessing::Core
