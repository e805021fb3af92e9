// Names of tables, columns and indexes.
#pragma once

#include "jet/file/header.h"

#include <string>

namespace vellums::jet {

// The name as it is stored, without trailing blanks. Throws Error (3125) when it is empty, longer than
// 64 units, begins with a blank or holds a character that names must not have.
std::u16string checkedName(std::u16string_view name);

// The same for a new table. Also refused are names of the engine's own tables and names that the
// file's sort order cannot encode.
std::u16string checkedTableName(std::u16string_view name, SortOrder order);

// Begins with "MSys", "USys" or "~".
bool isSystemName(std::u16string_view name);

} // namespace vellums::jet
