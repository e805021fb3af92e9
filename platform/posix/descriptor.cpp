#include "platform/posix/descriptor.h"

#include <cerrno>

#include <unistd.h>

namespace vellums::platform {

std::size_t readRange(int descriptor, std::uint64_t offset, std::span<std::byte> buffer, int& error)
{
    error = 0;
    std::size_t done = 0;
    while (done < buffer.size()) {
        const ssize_t got = ::pread(
            descriptor, buffer.data() + done, buffer.size() - done, static_cast<off_t>(offset + done));
        // Interrupted by a signal before anything was read: once more. Nothing at all means the end of the
        // file.
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            error = errno;
        if (got <= 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

int writeRange(int descriptor, std::uint64_t offset, std::span<const std::byte> bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t put =
            ::pwrite(descriptor, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            // A write that takes nothing and tells no error would otherwise be tried for ever.
            return put < 0 ? errno : ENOSPC;
        done += static_cast<std::size_t>(put);
    }
    return 0;
}

} // namespace vellums::platform
