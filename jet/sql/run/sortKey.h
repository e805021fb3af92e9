// Keys of rows that sort by plain comparison of their bytes, for ORDER BY and DISTINCT.
#pragma once

#include "jet/file/header.h"
#include "jet/table/table.h"

#include <string>

namespace vellums::jet::sql {

// Memos are ordered by so many of their first units.
inline constexpr std::size_t kOrderedUnits = 255;

// Appends the part of one value. NULL sorts below everything. No part is the beginning of another, so
// that parts can follow one another.
void appendSortPart(std::string& key, const Value& value, SortOrder order, bool descending);

// The same for a column of a row, of which no more is read than the key needs.
void appendSortPart(
    std::string& key, const Row& row, std::size_t column, bool text, SortOrder order, bool descending);

} // namespace vellums::jet::sql
