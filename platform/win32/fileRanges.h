// Reading, writing and locking whole ranges through a file handle, short transfers included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include <windows.h>

namespace vellums::platform {

// Gives the number of bytes read, less only at the end or on an error; `error` is then what the system
// said, else ERROR_SUCCESS.
std::size_t readRange(HANDLE handle, std::uint64_t offset, std::span<std::byte> buffer, DWORD& error);

// ERROR_SUCCESS when everything was written, else what the system said.
DWORD writeRange(HANDLE handle, std::uint64_t offset, std::span<const std::byte> bytes);

// Locks bytes of an open file at once or not at all, until the handle is closed; they may lie behind its end.
// ERROR_SUCCESS, ERROR_LOCK_VIOLATION when another handle has locked some of them, or why this file system
// locks nothing.
DWORD lockRange(HANDLE handle, std::uint64_t offset, std::uint64_t length, bool shared);

} // namespace vellums::platform
