// Capital and small letters of any script. Each unit is changed for itself: a text keeps its length.
#pragma once

#include <string>
#include <string_view>

namespace vellums::text {

char16_t lowerCase(char16_t c);
std::u16string lowerCase(std::u16string_view text);
std::u16string upperCase(std::u16string_view text);
bool equalNoCase(std::u16string_view a, std::u16string_view b);

} // namespace vellums::text
