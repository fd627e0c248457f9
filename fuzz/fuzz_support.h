// What the fuzz targets of nodes share: memory bounded as the fuzzer's is, a
// graph update to run them with, and a quiet log. Included by one file per target.
#pragma once

#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/IGraphUpdate.h>

#include <GCBase/GCException.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace FuzzSupport
{

// The fuzzer's memory is limited: larger buffers are refused as a pool out of memory would.
class BoundedBufferProvider final : public Tarvik::DataProcessing::Core::IBufferProvider
{
public:
    std::shared_ptr<Tarvik::DataProcessing::Core::IBuffer> allocate(size_t size) override
    {
        if (size > 16 * 1024 * 1024)
            throw BAD_ALLOC_EXCEPTION("Pool has no buffer of %zu bytes.", size);
        return m_provider.allocate(size);
    }

private:
    Tarvik::DataProcessing::Core::AlignedBufferProvider m_provider;
};

struct NullUpdate : Tarvik::DataProcessing::Core::IGraphUpdate
{
    uint64_t getId() const override { return 1; }
    const std::vector<std::shared_ptr<IGraphUpdate>>& getParents() const override { return parents; }
    std::vector<std::shared_ptr<IGraphUpdate>> parents;
};

} // namespace FuzzSupport

// Failed checks log a line each; thousands of them a second would only slow the search.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("TARVIK_LOG_LEVEL", "0", 0);
    return 0;
}
