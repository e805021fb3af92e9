// The smallest file that the page floor opens: a header, an empty map of free pages, and the first
// bytes of a definition page.
#pragma once

#include "jet/file/bytes.h"

#include <string>

namespace vellums::tests {

// Writes it at `path`; its pages behind the third are rows pages without rows.
void writeBareFile(const std::u16string& path, std::uint32_t pages = 3);

jet::Bytes readBytes(const std::u16string& path);
void writeBytes(const std::u16string& path, jet::ByteView bytes);

} // namespace vellums::tests
