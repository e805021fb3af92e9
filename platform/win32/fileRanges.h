// Reading and writing whole ranges through a file handle, short transfers included.
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

} // namespace vellums::platform
