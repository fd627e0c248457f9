#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/core/IResourcePool.h>

#include <GCBase/GCException.h>

#include <cstdlib>
#include <new>

namespace Tarvik::DataProcessing::Core
{

IBuffer::~IBuffer() = default;
IBufferProvider::~IBufferProvider() = default;
IResourcePool::~IResourcePool() = default;

namespace
{

class AlignedBuffer final : public IBuffer
{
public:
    AlignedBuffer(void* data, size_t size)
        : m_data(data)
        , m_size(size)
    {
    }
    ~AlignedBuffer() override { std::free(m_data); }
    AlignedBuffer(const AlignedBuffer&) = delete;
    AlignedBuffer& operator=(const AlignedBuffer&) = delete;

    void* getData() override { return m_data; }
    const void* getData() const override { return m_data; }
    size_t getSize() const override { return m_size; }

private:
    void* m_data;
    size_t m_size;
};

} // namespace

AlignedBufferProvider::~AlignedBufferProvider() = default;

std::shared_ptr<IBuffer> AlignedBufferProvider::allocate(size_t size)
{
    // aligned_alloc wants a multiple of the alignment; a zero size still gets a block.
    const size_t rounded = size / alignment * alignment + alignment;
    if (rounded < size)
        throw BAD_ALLOC_EXCEPTION("Cannot allocate a buffer of %zu bytes.", size);
    void* const data = std::aligned_alloc(alignment, rounded);
    if (!data)
        throw BAD_ALLOC_EXCEPTION("Cannot allocate a buffer of %zu bytes.", size);
    try
    {
        return std::make_shared<AlignedBuffer>(data, size);
    }
    catch (...)
    {
        std::free(data);
        throw;
    }
}

std::shared_ptr<IUpdateFactory> IResourcePool::getUpdateFactory()
{
    return nullptr;
}

std::shared_ptr<IJobQueue> IResourcePool::getJobQueue()
{
    return nullptr;
}

ResourcePool::ResourcePool(std::shared_ptr<IBufferProvider> provider,
                           std::shared_ptr<IUpdateFactory> updateFactory, std::shared_ptr<IJobQueue> jobQueue)
    : m_provider(provider ? std::move(provider) : std::make_shared<AlignedBufferProvider>())
    , m_updateFactory(std::move(updateFactory))
    , m_jobQueue(std::move(jobQueue))
{
}
ResourcePool::~ResourcePool() = default;
std::shared_ptr<IBufferProvider> ResourcePool::getBufferProvider()
{
    return m_provider;
}

std::shared_ptr<IUpdateFactory> ResourcePool::getUpdateFactory()
{
    return m_updateFactory;
}

std::shared_ptr<IJobQueue> ResourcePool::getJobQueue()
{
    return m_jobQueue;
}

} // namespace Tarvik::DataProcessing::Core
