// The command line of the process.
#pragma once

#include <string>
#include <vector>

namespace vellums::platform {

// Without the program's own name, split as Windows programs are used to.
std::vector<std::u16string> commandLineArguments();
// The raw text behind the program's name, without blanks and tabs at both ends.
std::u16string commandLineText();

} // namespace vellums::platform
