// Compaction: a database file is replaced by a copy without the room that changes have left in it.
#pragma once

#include "store/notebook.h"

#include <string>

namespace vellums {

struct Compaction {
    bool done = false;
    std::u16string report; // for a message box, in the language of the interface; lines end in CR LF
};

// Compacts the file (full path) in place; its read-only, hidden, system and archive marks are cleared.
// At every moment the whole database lies under its name: the old one, or the compacted one. When it
// fails the old one stays, and the report's last line says why. The caller holds no connection to it.
Compaction compactDatabase(const Notebook& notebook, const std::u16string& file);

} // namespace vellums
