// Paths as text. Both "/" and "\" end a folder, on every system.
#pragma once

#include <string>
#include <string_view>

namespace vellums::text {

// The last separator or npos.
std::size_t lastSeparator(std::u16string_view path);

} // namespace vellums::text
