#include "platform/text.h"

#include <windows.h>

namespace vellums::platform {

char16_t lowerCase(char16_t c)
{
    if (c < 0x80)
        return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
    wchar_t buffer = static_cast<wchar_t>(c);
    CharLowerBuffW(&buffer, 1);
    return static_cast<char16_t>(buffer);
}

} // namespace vellums::platform
