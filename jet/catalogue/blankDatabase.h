// Makes an Access file from nothing.
#pragma once

#include "jet/file/bytes.h"

#include <string>

namespace vellums::jet {

enum class FileFormat { Jet4, Ace12 }; // .mdb, .accdb

// The bytes of a file without user tables. `now` (days since 1899-12-30) dates the catalogue rows.
Bytes blankDatabase(FileFormat format, double now);

// Writes a blank file at `path`, whole or not at all. Throws Error: the file exists (3204), the folder
// is missing (3044), read-only (3051), disk full (3026).
void createDatabase(const std::u16string& path, FileFormat format, double now);

} // namespace vellums::jet
