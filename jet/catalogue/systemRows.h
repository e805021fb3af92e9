// Access to rows of the system tables by the names of their columns.
#pragma once

#include "jet/catalogue/systemTables.h"
#include "jet/table/table.h"

#include <optional>
#include <string>

namespace vellums::jet {

inline constexpr std::int32_t kRootId = 0x0F000000; // ids in MSysObjects
inline constexpr std::int32_t kTablesId = 0x0F000001;
inline constexpr std::int32_t kDatabasesId = 0x0F000002;
inline constexpr std::int32_t kRelationshipsId = 0x0F000003;
inline constexpr std::int32_t kDatabaseId = 0x10000000;

// A column's place. Throws (damaged file) when the table has no such column.
std::size_t columnOf(const Table& table, std::u16string_view name);

// Values of a row; NULL gives the empty value. Throws (damaged file) when the type is another one.
std::int32_t numberIn(const Row& row, std::size_t column);
std::u16string textIn(const Row& row, std::size_t column);
std::optional<Bytes> bytesIn(const Row& row, std::size_t column);

// The row of an object in MSysObjects.
std::optional<Row> objectRow(const Table& objects, std::int32_t id);

} // namespace vellums::jet
