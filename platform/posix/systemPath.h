// Paths for the calls of a POSIX system.
#pragma once

#include "platform/files.h"

#include <string>
#include <string_view>

namespace vellums::platform {

// UTF-8 bytes of a path, with "\" turned into "/". Code units that came from a name that was no
// UTF-8 (see pathFromBytes) become the bytes they were.
std::string systemPath(std::u16string_view path);

// The path of the bytes that the system gave. A byte that is no UTF-8 becomes a lone low surrogate
// U+DC80 to U+DCFF, so that the file can still be opened by that path.
std::u16string pathFromBytes(std::string_view bytes);

// The kind of an errno.
FileFault faultOfErrno(int code);

} // namespace vellums::platform
