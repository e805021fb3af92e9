#include "platform/win32/commandLine.h"

#include "platform/win32/systemPath.h"

#include <string_view>

#include <windows.h>

#include <shellapi.h>

namespace vellums::platform {

std::vector<std::u16string> commandLineArguments()
{
    std::vector<std::u16string> arguments;
    int count = 0;
    wchar_t** values = CommandLineToArgvW(GetCommandLineW(), &count);
    if (values == nullptr)
        return arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(fromWide(values[i]));
    LocalFree(values);
    return arguments;
}

std::u16string commandLineText()
{
    constexpr std::wstring_view kBlanks = L" \t";
    std::wstring_view text = GetCommandLineW();
    // The program's name ends at the first blank outside quotes.
    bool quoted = false;
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        if (text[end] == L'"')
            quoted = !quoted;
        else if (!quoted && kBlanks.find(text[end]) != std::wstring_view::npos)
            break;
    }
    text.remove_prefix(end);
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::wstring_view::npos)
        return {};
    return fromWide(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

} // namespace vellums::platform
