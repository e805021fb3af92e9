// Names and texts of Jet 3 files, which lie in the code page of the file.
#pragma once

#include "jet/file/bytes.h"

#include <cstdint>
#include <string>

namespace vellums::jet {

// What the system cannot convert becomes a replacement character.
std::u16string codePageText(ByteView bytes, std::uint16_t codePage);

} // namespace vellums::jet
