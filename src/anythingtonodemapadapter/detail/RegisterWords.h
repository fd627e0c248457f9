// Every register of a node-map port is one 8-byte little-endian word. The package runs
// on little-endian machines only, so a word is the value's own bytes.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace AnythingToNodeMapAdapter::Detail
{

static_assert(std::endian::native == std::endian::little,
              "register words are served in the machine's byte order");

constexpr int64_t registerWordLength = 8;

template <typename T>
void storeRegisterWord(void* buffer, T value)
{
    static_assert(sizeof(T) == registerWordLength);
    std::memcpy(buffer, &value, sizeof value);
}

template <typename T>
T loadRegisterWord(const void* buffer)
{
    static_assert(sizeof(T) == registerWordLength);
    T value;
    std::memcpy(&value, buffer, sizeof value);
    return value;
}

inline uint64_t flagWord(bool flag)
{
    return flag ? 1u : 0u;
}

// A read that cannot be served gives zeros over the whole requested length.
inline void zeroFill(void* buffer, int64_t length)
{
    if (buffer && length > 0)
    {
        std::memset(buffer, 0, static_cast<size_t>(length));
    }
}

} // namespace AnythingToNodeMapAdapter::Detail
