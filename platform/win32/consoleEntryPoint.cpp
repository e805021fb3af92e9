// The console program.
#include "platform/entryPoint.h"

#include "platform/win32/commandLine.h"

#include <fcntl.h>
#include <io.h>
#include <stdio.h>

#include <windows.h>

namespace {

// The console reads and shows UTF-8 while the program runs.
class Utf8Console {
public:
    Utf8Console()
        : input_(GetConsoleCP())
        , output_(GetConsoleOutputCP())
    {
        SetConsoleCP(CP_UTF8);
        SetConsoleOutputCP(CP_UTF8);
    }
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;
    ~Utf8Console()
    {
        SetConsoleCP(input_);
        SetConsoleOutputCP(output_);
    }

private:
    UINT input_;
    UINT output_;
};

} // namespace

extern "C" int wmain(int, wchar_t**)
{
    // Texts pass through as the bytes they are.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    const Utf8Console console;
    return programMain(vellums::platform::commandLineArguments(), vellums::platform::commandLineText());
}
