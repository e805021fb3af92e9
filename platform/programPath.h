// Where the running program lies.
#pragma once

#include <string>

namespace vellums::platform {

// The full path of the running executable.
std::u16string programFile();
// Its folder, without a separator at the end unless it is a root.
std::u16string programFolder();
// Its name without folder and extension.
std::u16string programName();

} // namespace vellums::platform
