#include "platform/text.h"

#include <clocale>
#include <cwctype>
#include <locale.h>

namespace vellums::platform {

char16_t lowerCase(char16_t c)
{
    if (c < 0x80)
        return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
    static const locale_t tables = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (tables == nullptr)
        return c;
    const wint_t lower = ::towlower_l(c, tables);
    return lower <= 0xFFFF ? static_cast<char16_t>(lower) : c;
}

} // namespace vellums::platform
