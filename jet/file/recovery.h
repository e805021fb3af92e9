// What to do with a journal that is found beside a database, and doing it.
#pragma once

#include "jet/file/journal.h"

namespace vellums::jet {

enum class JournalVerdict {
    Idle,     // nothing in it
    Over,     // its statement is over, or ended before it changed the database
    Complete, // the database holds all that the statement wrote
    RollBack, // the database holds parts of it
    Foreign   // of another file, or of another time of this one
};

// Compares the database with the journal, sector by sector. Throws platform::FileError.
JournalVerdict judgeJournal(const DiskFile& database, const DiskFile& journal);

// Puts the database back as it was before the statement of the journal and returns when that is on the
// disk. At least that many segments must be there. Throws platform::FileError; may be repeated then.
void putBack(DiskFile& database, const DiskFile& journal, std::size_t segments);

// Marks the journal idle. The database must be on the disk before. No part of its statement is ever taken
// for the whole one again: the mark of its end is on the disk before the journal counts as idle and may be
// written over.
void retire(DiskFile& journal);

} // namespace vellums::jet
