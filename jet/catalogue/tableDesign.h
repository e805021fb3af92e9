// From what a statement asks for to the definition of a table.
#pragma once

#include "jet/catalogue/catalogue.h"

namespace vellums::jet {

// The column of a definition, without number, slot, offset and maps. Throws Error when the type or the
// length cannot be had.
Column designColumn(const ColumnSpec& spec, SortOrder order);

// An index for a table: its tree without places on pages, and its name with a number that no other has.
struct DesignedIndex {
    PhysicalIndex tree;
    LogicalIndex name;
    std::size_t place = 0; // of the name among the others
};

// Throws Error: name taken (3284) or not allowed (3125), a second primary key (3283), columns that do not
// exist or cannot be indexed (3409), too many of them (3286), too many indexes (3626).
DesignedIndex designIndex(const TableDefinition& definition, const IndexSpec& spec,
    const std::u16string& table, const Header& header);

// A whole definition, without places on pages. Throws Error when names clash or are not allowed, when
// there is too much of something, or when an index cannot be kept.
TableDefinition designTable(const TableSpec& spec, const Header& header);

} // namespace vellums::jet
