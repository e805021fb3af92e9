// Which units of UTF-16 count as the same to LIKE and INSTR: case, width and kana do not matter, as in the
// sort order of Access files. Letter case by itself, that of UCASE and LCASE too, is text/letterCase.h.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace vellums::jet::sql {

using FoldTable = std::array<char16_t, 65536>;

// For each unit the one that stands for all that fold together with it: full and half width forms as
// ordinary ones, katakana as hiragana, capital letters. Built at the first call.
const FoldTable& foldTable();

// All units that fold to the same as `unit`, ascending.
std::vector<char16_t> foldedAlike(char16_t unit);

} // namespace vellums::jet::sql
