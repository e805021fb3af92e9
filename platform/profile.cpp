#include "platform/profile.h"

namespace vellums::platform {

std::u16string profileText(std::u16string_view value)
{
    std::u16string line(value.substr(0, value.find_first_of(std::u16string_view(u"\r\n\0", 3))));
    const auto blank = [](char16_t c) { return c == u' ' || c == u'\t'; };
    const auto quote = [](char16_t c) { return c == u'"' || c == u'\''; };
    if (line.empty())
        return line;
    // Reading takes one pair of quotes off; a value that has one of its own is given another around it.
    const bool outerQuotes = line.size() > 1 && quote(line.front()) && line.front() == line.back();
    if (blank(line.front()) || blank(line.back()) || outerQuotes)
        return u"\"" + line + u"\"";
    return line;
}

} // namespace vellums::platform
