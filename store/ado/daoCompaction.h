// Compacted copies of database files, written by DAO.
#pragma once

#include <string>

namespace vellums {

// Writes a compacted copy; both are full paths and the destination must not exist. The format stays. A
// file whose extension is neither mdb nor accdb is refused. Throws ProviderError; what was written by
// then may lie at the destination.
void compactWithDao(const std::u16string& source, const std::u16string& destination);

} // namespace vellums
