// From what a statement asks for to the definition of a table.
#pragma once

#include "jet/catalogue/catalogue.h"

namespace vellums::jet {

// The column of a definition, without number, slot, offset and maps. Throws Error when the type or the
// length cannot be had.
Column designColumn(const ColumnSpec& spec, SortOrder order);

// A whole definition, without places on pages. Throws Error when names clash or are not allowed, when
// there is too much of something, or when an index cannot be kept.
TableDefinition designTable(const TableSpec& spec, const Header& header);

} // namespace vellums::jet
