// What the framework lends its nodes: where their image memory comes from.
#pragma once

#include <TarvikDataProcessingCore/core/IBuffer.h>

#include <memory>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API IResourcePool
{
public:
    virtual ~IResourcePool();
    virtual std::shared_ptr<IBufferProvider> getBufferProvider() = 0;
};

// A pool around one buffer provider; by default an AlignedBufferProvider.
class TDPC_API ResourcePool : public IResourcePool
{
public:
    explicit ResourcePool(std::shared_ptr<IBufferProvider> provider = nullptr);
    ~ResourcePool() override;
    std::shared_ptr<IBufferProvider> getBufferProvider() override;

private:
    std::shared_ptr<IBufferProvider> m_provider;
};

} // namespace Tarvik::DataProcessing::Core
