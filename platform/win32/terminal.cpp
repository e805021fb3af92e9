#include "platform/terminal.h"

#include <windows.h>

namespace vellums::platform {

bool errorsGoToTerminal()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != FALSE;
}

} // namespace vellums::platform
