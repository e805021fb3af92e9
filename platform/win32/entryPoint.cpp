// The window program.
#include "platform/entryPoint.h"

#include "platform/win32/commandLine.h"

#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int)
{
    return programMain(vellums::platform::commandLineArguments(), vellums::platform::commandLineText());
}
