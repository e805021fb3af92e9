// Texts taken apart and put together.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellums::text {

// One pass from left to right over the text; what was put in is not looked at again.
std::u16string replaceAll(std::u16string_view text, std::u16string_view from, std::u16string_view to);
std::u16string replaceAllNoCase(std::u16string_view text, std::u16string_view from, std::u16string_view to);

// Without the blanks (U+0020) at both ends.
std::u16string_view trimBlanks(std::u16string_view text);

// The pieces between the separators; one empty piece for an empty text.
std::vector<std::u16string> split(std::u16string_view text, std::u16string_view separator);

} // namespace vellums::text
