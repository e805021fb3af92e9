// The rollback journal: how the pages looked before a statement changed them.
//
// It stands beside the database as "<file>-journal" and is only touched under the exclusive lock of
// the database file.
//
//   offset  size  holds
//        0     8  the letters VELJRNL1; zeros: the journal is idle
//        8     4  number of records n
//       12     4  pages of the database before the statement
//       16     8  a number that differs from statement to statement
//       24     8  checksum of page 0 of the database, which no statement changes
//       32     8  checksum of bytes 8 to 31 and of the records
//       40  24*n  records: page (4), 1 if the page is new and has no image (4), checksum of the page
//                 after the statement (8), checksum of its image (8)
//          4096*  images of the pages that are not new, in the order of their records
//
// A journal that is complete (all checksums fit) and whose pages in the database do not all fit the
// "after" checksums belongs to an interrupted statement: the images go back. An incomplete one was
// interrupted before the database was touched.
#pragma once

#include "jet/file/bytes.h"
#include "jet/file/diskFile.h"

#include <string>
#include <vector>

namespace vellums::jet {

// One changed page.
struct JournalPage {
    std::uint32_t page = 0;
    ByteView before; // empty for a page that is new
    ByteView after;
};

std::u16string journalPath(const std::u16string& databasePath);

// The whole journal for a statement, ready to be written.
Bytes makeJournal(
    const std::vector<JournalPage>& pages, std::uint32_t pagesBefore, std::uint64_t number, ByteView page0);

// The journal file holds a statement (complete or not) and is not idle.
bool isHot(const DiskFile& journal);

// Puts the database back as it was before an interrupted statement, if the journal says so, and marks
// the journal idle. Throws platform::FileError.
void rollBack(DiskFile& database, DiskFile& journal);

void markIdle(DiskFile& journal);

} // namespace vellums::jet
