// Reading and writing whole ranges through a file descriptor, interruptions and short transfers included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <unistd.h>
#include <utility>

namespace vellums::platform {

// Gives the number of bytes read, less only at the end or on an error; `error` is then errno, else 0.
std::size_t readRange(int descriptor, std::uint64_t offset, std::span<std::byte> buffer, int& error);

// 0 when everything was written, else errno.
int writeRange(int descriptor, std::uint64_t offset, std::span<const std::byte> bytes);

// Closes what it holds; -1: nothing.
struct OwnedDescriptor {
    int fd = -1;
    explicit OwnedDescriptor(int raw)
        : fd(raw)
    {
    }
    OwnedDescriptor(OwnedDescriptor&& other) noexcept
        : fd(std::exchange(other.fd, -1))
    {
    }
    OwnedDescriptor& operator=(OwnedDescriptor&&) = delete;
    ~OwnedDescriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

} // namespace vellums::platform
