// Every register of a node-map port is one 8-byte little-endian word. The package runs
// on little-endian machines only, so a word is the value's own bytes; a flag is 1 or 0,
// and any word but 0 stands for true.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace AnythingToNodeMapAdapter::Detail
{

static_assert(std::endian::native == std::endian::little,
              "register words are served in the machine's byte order");

using RegisterWord = uint64_t;

constexpr int64_t registerWordLength = sizeof(RegisterWord);

template <typename T>
RegisterWord toRegisterWord(T value)
{
    if constexpr (std::is_same_v<T, bool>)
    {
        return value ? 1u : 0u;
    }
    else
    {
        return std::bit_cast<RegisterWord>(value);
    }
}

template <typename T>
T fromRegisterWord(RegisterWord word)
{
    if constexpr (std::is_same_v<T, bool>)
    {
        return word != 0;
    }
    else
    {
        return std::bit_cast<T>(word);
    }
}

inline void storeRegisterWord(void* buffer, RegisterWord word)
{
    std::memcpy(buffer, &word, sizeof word);
}

inline RegisterWord loadRegisterWord(const void* buffer)
{
    RegisterWord word;
    std::memcpy(&word, buffer, sizeof word);
    return word;
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
