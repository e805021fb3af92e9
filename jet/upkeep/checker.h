// Checks every structure of a file.
#pragma once

#include "jet/file/pageFile.h"

#include <string>
#include <vector>

namespace vellums::jet {

// Looks at every table (the system's own too), page, row, long value, usage map and index entry, and at
// what the system tables say about each other. Each fault is one line; none: the file is sound. What
// real files show without harm is no fault: pages that nobody owns, wrong row counts.
std::vector<std::u16string> checkFile(PageFile& file);

} // namespace vellums::jet
