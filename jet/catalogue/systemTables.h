// The definitions of the system tables that every file has, and of those that ACE files have besides.
#pragma once

#include "jet/table/tableDefinition.h"

#include <string>
#include <vector>

namespace vellums::jet {

inline constexpr PageNo kObjectsPage = 2; // definition pages, the same in every file
inline constexpr PageNo kPermissionsPage = 3;
inline constexpr PageNo kQueriesPage = 4;
inline constexpr PageNo kRelationshipsPage = 5;

// A table of a new file: its definition without places for maps and roots, columns and logical
// indexes in the order of their records.
struct SystemTable {
    std::u16string name;
    TableDefinition definition;
};

// MSysObjects, MSysACEs, MSysQueries, MSysRelationships.
std::vector<SystemTable> coreTables(SortOrder order);
// MSysComplexColumns and the MSysComplexType_... tables.
std::vector<SystemTable> complexTables(SortOrder order);

} // namespace vellums::jet
