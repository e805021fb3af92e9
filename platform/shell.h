// The user's folders and drives.
#pragma once

#include <string>

namespace vellums::platform {

enum class SpecialFolder { Desktop, Documents, SendTo };

// For shortcuts; nothing calls it yet. The folder's path without a separator at the end; empty where the
// system has none.
std::u16string specialFolder(SpecialFolder folder);

} // namespace vellums::platform
