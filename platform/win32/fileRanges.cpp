#include "platform/win32/fileRanges.h"

#include <algorithm>

namespace vellums::platform {
namespace {

constexpr std::size_t kMostInOneCall = std::size_t{1} << 28;

// With it a call reads or writes at a place of its own, and the file's position, which threads share, counts
// for nothing.
OVERLAPPED at(std::uint64_t offset)
{
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFFu);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

} // namespace

std::size_t readRange(HANDLE handle, std::uint64_t offset, std::span<std::byte> buffer, DWORD& error)
{
    error = ERROR_SUCCESS;
    std::size_t done = 0;
    while (done < buffer.size()) {
        OVERLAPPED place = at(offset + done);
        DWORD got = 0;
        const DWORD wanted = static_cast<DWORD>(std::min(buffer.size() - done, kMostInOneCall));
        if (!ReadFile(handle, buffer.data() + done, wanted, &got, &place)) {
            const DWORD code = GetLastError();
            if (code != ERROR_HANDLE_EOF)
                error = code;
            break;
        }
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

DWORD writeRange(HANDLE handle, std::uint64_t offset, std::span<const std::byte> bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        OVERLAPPED place = at(offset + done);
        DWORD put = 0;
        const DWORD wanted = static_cast<DWORD>(std::min(bytes.size() - done, kMostInOneCall));
        if (!WriteFile(handle, bytes.data() + done, wanted, &put, &place))
            return GetLastError();
        if (put == 0)
            return ERROR_DISK_FULL;
        done += put;
    }
    return ERROR_SUCCESS;
}

DWORD lockRange(HANDLE handle, std::uint64_t offset, std::uint64_t length, bool shared)
{
    OVERLAPPED place = at(offset);
    const DWORD how = LOCKFILE_FAIL_IMMEDIATELY | (shared ? 0u : LOCKFILE_EXCLUSIVE_LOCK);
    const BOOL locked = LockFileEx(
        handle, how, 0, static_cast<DWORD>(length & 0xFFFFFFFFu), static_cast<DWORD>(length >> 32), &place);
    return locked ? ERROR_SUCCESS : GetLastError();
}

} // namespace vellums::platform
