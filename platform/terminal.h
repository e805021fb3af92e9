// The console of a command-line program.
#pragma once

namespace vellums::platform {

// Whether what is written to standard error is read by a person.
bool errorsGoToTerminal();

} // namespace vellums::platform
