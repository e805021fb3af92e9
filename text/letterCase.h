// Capital and small letters of any script. Each unit is changed for itself: a text keeps its length.
//
// What the SQL of Access files takes for the same goes further, as their sort order does: width and kana do
// not count there, either (jet/sql/values/caseFold.h).
#pragma once

#include <string>
#include <string_view>

namespace vellums::text {

char16_t lowerCase(char16_t c);
char16_t upperCase(char16_t c);
std::u16string lowerCase(std::u16string_view text);
std::u16string upperCase(std::u16string_view text);

// What upperCase() can undo, unit by unit: only what is the capital of its small letter is changed.
// Title-case digraphs, the capital sharp s, the signs for ohm and angstrom stay. LCASE of the SQL dialect
// goes by it.
std::u16string lowerCaseOfCapitals(std::u16string_view text);

bool equalNoCase(std::u16string_view a, std::u16string_view b);

} // namespace vellums::text
