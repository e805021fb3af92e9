// Removal of duplicates: records of the current table that have the digest of an earlier one.
#pragma once

#include "store/records/bulkAct.h"

#include <cstddef>
#include <string>

namespace vellums {

struct Duplicates {
    bool done = false;          // false: an error, shown in the panel, or a Stop; what was deleted stays so
    std::size_t removed = 0;    // records deleted
    std::size_t total = 0;      // records looked at
    std::u16string withoutCopy; // why there is no safety copy, where nothing was deleted for that
};

// Of the records with one digest the oldest stays. Records without a digest are never deleted. Before
// anything is deleted a safety copy is made; where it cannot be made and nobody can be asked, the
// duplicates are left in place, and the panel says so. The panel tells what was removed, if anything was.
Duplicates delDupRec(const Notebook& notebook, const BulkUser& user = {});

} // namespace vellums
