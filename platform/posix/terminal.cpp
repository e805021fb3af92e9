#include "platform/terminal.h"

#include <unistd.h>

namespace vellums::platform {

bool errorsGoToTerminal()
{
    return ::isatty(STDERR_FILENO) != 0;
}

} // namespace vellums::platform
