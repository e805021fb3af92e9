// A copy of the database beside it, made before a command that deletes or rewrites many records.
#pragma once

#include <string>

namespace vellums {

// Where the copy of a database file lies: "notes.mdb.bak".
std::u16string safetyCopyPath(const std::u16string& file);

// Replaces an earlier copy, whole or not at all. False when there was no room or it could not be
// written or the database is being changed.
bool makeSafetyCopy(const std::u16string& file);

} // namespace vellums
