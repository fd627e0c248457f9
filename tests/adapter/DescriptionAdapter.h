// The description half of the adapter on its own, for tests that need no node map.
#pragma once

#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapterBase.h>

#include "detail/AnythingToNodeMapAdapterBaseImpl.h"

#include <memory>

namespace AdapterTest
{

class DescriptionAdapter : public AnythingToNodeMapAdapter::CAnythingToNodeMapAdapterBase
{
public:
    using Impl = CAnythingToNodeMapAdapterBase::CAnythingToNodeMapAdapterBaseImpl;

    DescriptionAdapter()
        : DescriptionAdapter(std::make_unique<Impl>())
    {
    }

    Impl& impl() { return *m_impl; }

private:
    explicit DescriptionAdapter(std::unique_ptr<Impl> impl)
        : CAnythingToNodeMapAdapterBase(impl.get())
        , m_impl(std::move(impl))
    {
    }

    std::unique_ptr<Impl> m_impl;
};

} // namespace AdapterTest
