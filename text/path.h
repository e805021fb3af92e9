// Paths as text. Both "/" and "\" end a folder, on every system.
#pragma once

#include <cstddef>
#include <string_view>

namespace vellums::text {

// The last separator or npos.
std::size_t lastSeparator(std::u16string_view path);

// Without the separator at its end; a root ("/", "C:\") keeps it, as without it it would mean something else.
std::u16string_view withoutSeparator(std::u16string_view folder);

// The folder that a path lies in, in the form of withoutSeparator(); empty for a bare name.
std::u16string_view folderOf(std::u16string_view path);
// The name behind the folder: the whole path where there is none.
std::u16string_view nameOf(std::u16string_view path);

} // namespace vellums::text
