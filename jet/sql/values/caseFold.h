// Which units of UTF-16 count as the same where case, width and kana do not matter, and capital and
// small letters one by one.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::jet::sql {

using FoldTable = std::array<char16_t, 65536>;

// For each unit the one that stands for all that fold together with it: full and half width forms as
// ordinary ones, katakana as hiragana, capital letters. Built at the first call.
const FoldTable& foldTable();

// All units that fold to the same as `unit`, ascending.
std::vector<char16_t> foldedAlike(char16_t unit);

// Letter by letter; no text gets longer or shorter.
std::u16string upperCase(std::u16string_view text);
std::u16string lowerCase(std::u16string_view text);

} // namespace vellums::jet::sql
