// New, renamed and dropped tables of the current database.
//
// Each routine that takes a Notebook opens a connection of its own and ends every failure with one line
// in the status panel; false: nothing was changed. The forms that take a Connection throw ProviderError.
#pragma once

#include "store/notebook.h"

#include <string>

namespace vellums {

// A name that a new table may have, as it will be stored (blanks at its end go). Throws ProviderError for
// any other: empty, longer than 64 characters, brackets, dots and the like, names of system tables.
std::u16string checkedTableName(const std::u16string& name);

// The name, with a number behind it where a table has it already. Throws ProviderError.
std::u16string freeTableName(Connection& connection, const std::u16string& name);

// An empty table with the structure of the current one.
[[nodiscard]] bool newTable(const Notebook& notebook, const std::u16string& name);
void newTable(Connection& connection, const std::u16string& source, const std::u16string& name);

// An empty snippet table, whatever other tables there are.
[[nodiscard]] bool newSnippetTable(const Notebook& notebook, const std::u16string& name);
void newSnippetTable(Connection& connection, const std::u16string& name);

// Gives the current table another name: a copy with the rows, then the old table is dropped, both or
// neither where the provider can take statements back together.
[[nodiscard]] bool renameTable(const Notebook& notebook, const std::u16string& name);
void renameTable(Connection& connection, const std::u16string& table, const std::u16string& name);

[[nodiscard]] bool dropTable(const Notebook& notebook, const std::u16string& table);
void dropTable(Connection& connection, const std::u16string& table);

} // namespace vellums
