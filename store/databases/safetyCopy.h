// A copy of the database beside it, made before a command that deletes or rewrites many records.
#pragma once

#include "store/notebook.h"

#include <optional>
#include <string>

namespace vellums {

// Where the copy of a database file lies: "notes.mdb.bak".
std::u16string safetyCopyPath(const std::u16string& file);

// Copies the file of the current database; an earlier copy is replaced, whole or not at all. Gives the
// reason, in the language of the interface, when there is no copy: no room, no right to write, the
// database is being changed or is no file. The caller holds no connection to it.
[[nodiscard]] std::optional<std::u16string> makeSafetyCopy(const Notebook& notebook);

} // namespace vellums
