// Compaction: a file without the room that changes have left in it.
#pragma once

#include "jet/file/pageFile.h"

#include <string>

namespace vellums::jet {

// Writes a compacted copy to a path that nothing has. Everything that the file keeps is kept: queries, forms,
// relationships, permissions, linked tables, properties. `original` is open for writing. Throws Error: the
// file is damaged; the disk. An unfinished copy is left then.
void compactCopy(PageFile& original, const std::u16string& destination);

// Compacts a file (and keeps its password) in place, whole or not at all, holding it for writing all the
// while. A copy stands beside it meanwhile, as "<file>-compacted"; one that a run before left is removed.
// Throws Error, and the file is as it was.
void compactFile(const std::u16string& path, const std::u16string& password = {});

} // namespace vellums::jet
