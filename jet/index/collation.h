// How texts compare: the sort orders of Access files.
#pragma once

#include "jet/file/header.h"

#include <compare>
#include <string_view>

namespace vellums::jet {

// Appends the key bytes of a text (without the flag byte in front) for an index. False when the text
// cannot be encoded under this sort order, or when flag byte and key would exceed 500 bytes; `key` is
// then as before.
bool appendTextKey(Bytes& key, std::u16string_view text, SortOrder order, bool ascending);

// Keys can be made for some texts at least; false: no text of such a column can be indexed.
bool canEncodeTexts(SortOrder order);

// Compares as `=`, `<`, ORDER BY and DISTINCT do: case, width and kana do not count, trailing blanks
// neither. Total for every text and sort order (unknown ones compare as General legacy).
std::strong_ordering compareTexts(std::u16string_view a, std::u16string_view b, SortOrder order);

// A key whose bytes sort like compareTexts; never goes into a file.
Bytes comparisonKey(std::u16string_view text, SortOrder order);

} // namespace vellums::jet
