// Replaces characters that upset the text box or the database.
#pragma once

#include <string>
#include <string_view>

namespace vellums::formats {

// The text with every character replaced whose number in the ANSI code page (platform::ansiCode) is
//   0 to 8, 11, 12, 14 to 31, 129 to 255: by a blank (tab, line feed and carriage return stay),
//   63, as for every character that the code page does not know: by "?".
// The length stays. In UTF-8 nothing from U+0080 on changes.
std::u16string cleanCharacters(std::u16string_view text);

} // namespace vellums::formats
