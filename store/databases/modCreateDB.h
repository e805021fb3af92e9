// New databases.
#pragma once

#include "store/notebook.h"

#include <string>

namespace vellums {

// The name of the table in a new database: the file's name up to its first dot; "Memo" (Chinese
// "笔记") when that is nothing or there is no dot.
std::u16string newTableName(std::u16string_view fileName, bool chinese);

// Makes a database in the data folder with one empty snippet table; an empty name means Vellums.mdb.
// Gives the table's name; empty when it failed and the panel says why: the file exists, or the name is
// none that every system takes for a file (it names a folder, holds a forbidden character, is too long).
std::u16string dbCreateNew(const Notebook& notebook, const std::u16string& fileName);

} // namespace vellums
