// The user's folders and drives.
#pragma once

#include <string>
#include <string_view>

namespace vellums::platform {

enum class SpecialFolder { Desktop, Documents, SendTo };

// The folder's path without a separator at the end; empty where the system has none.
std::u16string specialFolder(SpecialFolder folder);

// Whether the path lies on a disk that stays in the machine.
bool isFixedDisk(std::u16string_view path);

} // namespace vellums::platform
