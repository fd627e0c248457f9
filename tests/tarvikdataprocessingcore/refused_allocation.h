// Lets a test refuse, on its own thread, every allocation of one size, so that
// the paths for exhausted memory can be reached. The test binary replaces the
// global allocation functions for that.
#pragma once

#include <cstddef>

class RefusedAllocation
{
public:
    // Refuses allocations of `size` bytes on this thread while the object lives.
    explicit RefusedAllocation(std::size_t size) noexcept;
    ~RefusedAllocation();
    RefusedAllocation(const RefusedAllocation&) = delete;
    RefusedAllocation& operator=(const RefusedAllocation&) = delete;

private:
    std::size_t m_previous;
};
