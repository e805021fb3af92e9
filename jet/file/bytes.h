// Little-endian numbers in byte ranges. The read functions check the range and throw the damaged-file
// error; the store functions are for buffers of our own.
#pragma once

#include "jet/file/error.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

namespace vellums::jet {

using Bytes = std::vector<std::byte>;
using ByteView = std::span<const std::byte>;
using MutableBytes = std::span<std::byte>;

static_assert(std::endian::native == std::endian::little, "numbers are copied as they lie in the file");

// The number of type T that starts at `offset`. Throws (damaged file) when it is not inside.
template <typename T>
T load(ByteView bytes, std::size_t offset)
{
    static_assert(std::is_trivially_copyable_v<T>);
    if (offset > bytes.size() || bytes.size() - offset < sizeof(T))
        throwDamaged(u"a number lies outside its page");
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof(T));
    return value;
}

// Writes the number at `offset`, which must lie inside.
template <typename T>
void store(MutableBytes bytes, std::size_t offset, std::type_identity_t<T> value)
{
    static_assert(std::is_trivially_copyable_v<T>);
    if (offset > bytes.size() || bytes.size() - offset < sizeof(T))
        throwDamaged(u"a number would lie outside its page");
    std::memcpy(bytes.data() + offset, &value, sizeof(T));
}

template <typename T>
void append(Bytes& bytes, std::type_identity_t<T> value)
{
    const std::size_t at = bytes.size();
    bytes.resize(at + sizeof(T));
    std::memcpy(bytes.data() + at, &value, sizeof(T));
}

inline void append(Bytes& bytes, ByteView more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

inline void insertBytes(Bytes& bytes, std::size_t at, ByteView more)
{
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), more.begin(), more.end());
}

inline void eraseBytes(Bytes& bytes, std::size_t at, std::size_t length)
{
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    bytes.erase(first, first + static_cast<std::ptrdiff_t>(length));
}

// Part of a range. Throws (damaged file) when it does not lie inside.
inline ByteView slice(ByteView bytes, std::size_t offset, std::size_t length)
{
    if (offset > bytes.size() || bytes.size() - offset < length)
        throwDamaged(u"a value reaches outside its page");
    return bytes.subspan(offset, length);
}

} // namespace vellums::jet
