// Paths for the calls of Windows.
#pragma once

#include "platform/files.h"

#include <string>
#include <string_view>

#include <windows.h>

namespace vellums::platform {

// The path as the W functions take it. Absolute paths of 248 and more characters get the prefix that
// lifts the length limit; Windows takes such paths literally, so "/" becomes "\" in them.
std::wstring systemPath(std::u16string_view path);

FileFault faultOfWindows(DWORD code);

// Windows' text as ours and back; both are UTF-16.
std::u16string fromWide(std::wstring_view text);
std::wstring toWide(std::u16string_view text);

} // namespace vellums::platform
