// The console program.
#include "platform/entryPoint.h"

#include "platform/win32/commandLine.h"

#include <fcntl.h>
#include <io.h>
#include <stdio.h>

extern "C" int wmain(int, wchar_t**)
{
    // Texts pass through as the bytes they are.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    return programMain(vellums::platform::commandLineArguments(), vellums::platform::commandLineText());
}
