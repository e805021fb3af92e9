#include "platform/entryPoint.h"

#include "platform/posix/systemPath.h"

int main(int count, char** values)
{
    std::vector<std::u16string> arguments;
    std::u16string commandLine;
    for (int i = 1; i < count; ++i) {
        const std::u16string argument = vellums::platform::pathFromBytes(values[i]);
        // As the shell's quotes are gone, those are put back that tell one argument from two.
        const bool quoted = argument.empty() || argument.find(u' ') != std::u16string::npos;
        if (i > 1)
            commandLine += u' ';
        commandLine += quoted ? u"\"" + argument + u"\"" : argument;
        arguments.push_back(argument);
    }
    return programMain(arguments, commandLine);
}
