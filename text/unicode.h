// UTF-8 and UTF-16. Nothing here ever fails: what is malformed becomes U+FFFD, one for each longest
// beginning of a sequence, and one for each lone surrogate.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vellums::text {

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

} // namespace vellums::text
