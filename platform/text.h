// Small helpers for text. Text is UTF-16; positions and lengths are code units.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::platform {

// UTF-8 and UTF-16. Neither ever fails: what is malformed becomes U+FFFD, one for each longest
// beginning of a sequence, and one for each lone surrogate.
std::u16string fromUtf8(std::string_view bytes);
std::string toUtf8(std::u16string_view text);

// What the bytes (at least one) begin with: a whole UTF-8 sequence, or the longest beginning of one,
// whose value is U+FFFD.
struct Utf8Sequence {
    char32_t value = 0xFFFD;
    std::size_t length = 1;
    bool whole = false;
};
Utf8Sequence utf8At(std::string_view bytes);
void appendUtf8(std::string& out, char32_t c);
// Appends one code unit, or two for what lies above U+FFFF.
void appendUtf16(std::u16string& out, char32_t c);

// A number in decimal digits, with "-" when negative.
std::u16string decimal(std::int64_t value);
// The same with leading zeros up to the width; for values from 0.
std::u16string decimal(std::int64_t value, int width);

// Lower case, each code unit for itself, as the system's case tables say; the length stays.
char16_t lowerCase(char16_t c);
std::u16string lowerCase(std::u16string_view text);
bool equalNoCase(std::u16string_view a, std::u16string_view b);

// One pass from left to right over the text; what was put in is not looked at again.
std::u16string replaceAll(std::u16string_view text, std::u16string_view from, std::u16string_view to);
std::u16string replaceAllNoCase(std::u16string_view text, std::u16string_view from, std::u16string_view to);

// Without the blanks (U+0020) at both ends.
std::u16string_view trimBlanks(std::u16string_view text);

// The pieces between the separators; one empty piece for an empty text.
std::vector<std::u16string> split(std::u16string_view text, std::u16string_view separator);

} // namespace vellums::platform
