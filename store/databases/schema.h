// Which databases and tables there are.
#pragma once

#include "store/notebook.h"
#include "store/snippetTable.h"

#include <string>
#include <vector>

namespace vellums {

// The table has exactly the columns of a snippet table, in their order and letter case. Any failure
// answers false.
bool isSnippetTable(
    const Notebook& notebook, const std::u16string& connectionString, const std::u16string& table);
bool isSnippetTable(Connection& connection, const std::u16string& table);

// The first ordinary table; "-" when there is none or the database cannot be read.
std::u16string getFirstTable(const Notebook& notebook, const std::u16string& connectionString);

// The names of the files in a folder (empty: the data folder) that match "*.*db", joined with CR LF.
std::u16string getDataBaseList(const Notebook& notebook, const std::u16string& folder);

// The first snippet table of a connection; empty when there is none. Throws ProviderError.
std::u16string firstSnippetTable(Connection& connection);

// All snippet tables of a connection, in the order of the schema; tables that cannot be read are left out.
// Throws ProviderError.
std::vector<std::u16string> snippetTables(Connection& connection);

// Column names of a table as the database reports them. Throws ProviderError.
std::vector<std::u16string> columnNames(Connection& connection, const std::u16string& table);

// Adds a column that a table of an old version lacks. 0: it was added; else the provider's number.
std::int32_t addSnippetColumn(
    Connection& connection, const std::u16string& table, const SnippetColumn& column);

} // namespace vellums
