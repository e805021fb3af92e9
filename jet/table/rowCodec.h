// The layout of a row.
//
//   u16        column slots of the table when the row was written (n)
//   ...        fixed area: each fixed column at its offset
//   ...        values of the variable columns, in the order of their slots
//   u16        end of the variable data
//   u16 each   offsets of the variable slots, last slot first
//   u16        number of variable slots in this row
//   (n+7)/8    null mask: bit c belongs to column number c, 1 means present; booleans are this bit
//
// A table without variable slots has nothing between fixed area and mask.
//
// In Jet 3 counts, offsets and the end take one byte each, the low one, and a jump table stands between the
// offsets and the number of variable slots: a byte for each full 256 bytes of the row, read from its back.
// From the slot on that such a byte names, offsets are larger by 256 for each.
#pragma once

#include "jet/table/tableDefinition.h"

#include <optional>
#include <vector>

namespace vellums::jet {

inline constexpr std::size_t kMaxRowBytes = 4060;

// The bit of a column in the null mask; false for columns younger than the row.
bool isPresent(const Format& format, ByteView row, const Column& column);

// The bytes of a column in the row; nullopt for NULL. A boolean has none.
std::optional<ByteView> columnBytes(const Format& format, ByteView row, const Column& column);

// What goes into a row, parallel to the columns of the definition. A true boolean is present and empty.
using RowContent = std::vector<std::optional<Bytes>>;

// Encodes a row by the definition as it is now. The result may be longer than kMaxRowBytes.
Bytes encodeRow(const TableDefinition& definition, const RowContent& content);

} // namespace vellums::jet
