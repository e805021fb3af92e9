#include "app/boxText.h"

namespace vellums {

std::u16string boxText(std::u16string_view text)
{
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        // One look to the left and one to the right: each half of a line end that lacks the other one gets
        // it.
        if (c == u'\n' && (i == 0 || text[i - 1] != u'\r'))
            result += u'\r';
        result += c == u'\0' ? u' ' : c;
        if (c == u'\r' && (i + 1 == text.size() || text[i + 1] != u'\n'))
            result += u'\n';
    }
    return result;
}

std::u16string_view firstLine(std::u16string_view text)
{
    return text.substr(0, text.find_first_of(u"\r\n"));
}

} // namespace vellums
