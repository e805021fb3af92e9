#include "formats/charCleaner.h"

#include "platform/codePage.h"

#include <cstdint>
#include <vector>

namespace vellums::formats {
namespace {

char16_t cleaned(char16_t c)
{
    const std::int16_t code = platform::ansiCode(c);
    const bool control = code >= 0 && code <= 31 && code != 9 && code != 10 && code != 13;
    if (control || (code >= 129 && code <= 255))
        return u' ';
    return code == 63 ? u'?' : c;
}

} // namespace

std::u16string cleanCharacters(std::u16string_view text)
{
    // Asking the system costs, and a text holds the same characters again and again: an answer is kept. The
    // unit of the number that stands for "not asked yet" is no character, and is asked about each time.
    constexpr char16_t kUnknown = 0xFFFF;
    std::vector<char16_t> known(0x10000, kUnknown);
    std::u16string out(text);
    for (char16_t& c : out) {
        char16_t& answer = known[c];
        if (answer == kUnknown)
            answer = cleaned(c);
        c = answer;
    }
    return out;
}

} // namespace vellums::formats
