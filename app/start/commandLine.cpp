#include "app/start/commandLine.h"

#include "text/letterCase.h"
#include "text/pieces.h"

namespace vellums {
namespace {

constexpr std::u16string_view kAdd = u"/add";
constexpr std::u16string_view kImport = u"/import";
constexpr std::u16string_view kLineEnd = u"\r\n";

bool startsWith(std::u16string_view text, std::u16string_view prefix)
{
    return text::lowerCase(text.substr(0, prefix.size())) == prefix;
}

// One quote at each end, each only when it is there; double quotes first, then apostrophes.
std::u16string_view withoutQuotes(std::u16string_view text)
{
    for (const char16_t quote : {u'"', u'\''}) {
        if (!text.empty() && text.front() == quote)
            text.remove_prefix(1);
        if (!text.empty() && text.back() == quote)
            text.remove_suffix(1);
    }
    return text;
}

// Blanks outside double quotes divide paths; the quotes themselves go.
std::vector<std::u16string> pathsOf(std::u16string_view text)
{
    std::u16string lines;
    bool quoted = false;
    for (const char16_t c : text) {
        if (c == u'"')
            quoted = !quoted;
        else if (c == u' ' && !quoted)
            lines += kLineEnd;
        else
            lines += c;
    }
    std::vector<std::u16string> paths;
    for (const std::u16string& path : text::split(lines, kLineEnd))
        if (!path.empty())
            paths.push_back(path);
    return paths;
}

} // namespace

Start parseCommandLine(std::u16string_view commandLine)
{
    const std::u16string_view text = text::trimBlanks(commandLine);
    Start start;
    if (startsWith(text, kAdd)) {
        start.add = true;
        start.addText = withoutQuotes(text::trimBlanks(text.substr(kAdd.size())));
    } else {
        start.paths = pathsOf(startsWith(text, kImport) ? text.substr(kImport.size()) : text);
    }
    return start;
}

} // namespace vellums
