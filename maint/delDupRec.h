// Removal of duplicates: records of the current table that have the digest of an earlier one.
#pragma once

#include "store/notebook.h"

#include <cstddef>
#include <functional>

namespace vellums::maint {

struct Duplicates {
    bool done = false;       // false: an error, shown in the panel; what was deleted before it stays so
    std::size_t removed = 0; // records deleted
    std::size_t total = 0;   // records looked at
};

// Of the records with one digest the oldest stays. Records without a digest are never deleted. Before
// anything is deleted the database is copied beside itself, unless the settings file says backup=0.
// Then refreshList is called (deleted or not), and the panel tells what was removed, if anything was.
Duplicates delDupRec(const Notebook& notebook, const std::function<void()>& refreshList = {});

// "2 duplicates removed from total 3 records (66.67%)."
std::u16string duplicatesText(const Notebook& notebook, std::size_t removed, std::size_t total);

} // namespace vellums::maint
