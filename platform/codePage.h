// The system's ANSI code page: the encoding of text files without a mark, of names in the folder
// scan, and of the settings file. On Windows it is what the system says; on POSIX it is a setting of
// the program, UTF-8 to begin with.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellums::platform {

constexpr unsigned kCodePageUtf8 = 65001;

unsigned ansiCodePage();
// Chooses the code page for the rest of the process. False when the system cannot convert it, and
// always on Windows, where it is the system's own.
bool setAnsiCodePage(unsigned codePage);

// Bytes of the code page as text. What is malformed becomes a replacement character.
std::u16string fromAnsi(std::string_view bytes);
// The same for any code page.
std::u16string fromCodePage(unsigned codePage, std::string_view bytes);
// Text in the code page, "?" for each code unit that it cannot represent (Windows may know a
// character that looks alike).
std::string toAnsi(std::u16string_view text);
// The same for names, where a look-alike would name something else: empty when a character is missing.
std::optional<std::string> toAnsiExact(std::u16string_view text);
// The text as it comes back from the code page: "?" for each code unit that is missing there.
std::u16string throughAnsi(std::u16string_view text);

// The number of a character in the code page: 0 to 255 for one byte; two bytes, the first one high,
// as a signed number (so it is negative); 63 when the code page has no such character. In UTF-8 every
// character from U+0080 on gives -1.
std::int16_t ansiCode(char16_t c);

} // namespace vellums::platform
