// The rollback journal: how the pages looked before a statement changed them.
//
// It stands beside the database as "<file>-journal". It grows in segments: a statement that has changed many
// pages seals one, and only then writes these pages into the database.
//
//   offset  size  holds
//        0     8  the letters VELJRNL2; VELJDONE: its statement is over; zeros: the journal is idle
//        8     8  a number that differs from statement to statement
//       16     4  pages of the database before the statement
//       24     8  checksum of the start of page 0 of the database, which no statement changes
//       32     8  checksum of bytes 8 to 31
//      512        segments, each:
//                 4  the letters SEGM
//                 4  number of records
//                 4  1: the last segment, the statement was written whole
//                 4  pages of the database after it
//                 8  number of the statement
//                 8  number of the segment, from 0
//                    records, each:
//                      4  page
//                      4  1: an image follows
//                    8*8  checksums of the page's sectors as they are going to be
//                    8*8  checksums of its sectors as they were, and
//                   4096  the image; both only where the second field says so
//                 8  checksum of all that but the images
//
// A record has an image when the page was in the file and the journal holds none of it yet. (Inside a
// batch a page may get another one, of its state at the mark.) Images put back from the last to the
// first give the file as it was before the statement.
//
// What makes a statement all or nothing (a thing is synced when it is on the disk for certain; of what was
// written since the last sync a crash may keep any sectors, in any order):
//
// 1. Database and journal are changed under the exclusive lock of the database file only. Whoever holds
//    it, and nobody else, rolls a journal back, sets it aside or removes it. A shared lock is enough to
//    look at both.
// 2. The entry of a new journal in its folder is synced before the first change of the database.
// 3. A segment is synced before any of its pages is written into the database. So of each sector that may
//    have changed the journal knows how it was and how it is going to be.
// 4. A segment says whether it is the last. With that one sealed, the database alone tells whether the
//    statement is done: when it has the size, and each changed sector the content, that is wanted last.
// 5. The database is synced, with all changes or with none, before the journal is marked.
// 6. The mark VELJDONE of a journal of several segments is synced before the zeros of an idle one are
//    written. Without it the next statement, while it writes over the journal, could leave the header and
//    the first segments of this one whole: these would pass for a statement that broke off. A journal of
//    one segment needs no such care: half written over, it has no whole segment left.
// 7. Pages that a statement cuts off are in the journal as changed ones, and the file is cut after the last
//    segment is sealed: one that is shorter than before, by such pages, is explained.
// 8. Taking back is writing images and cutting the file, so it may be interrupted and begun again.
//
// What the next one finds, by the step at which it ended, and what becomes of it (recovery.h):
//
//   first segment being written    no whole segment; the database is untouched       Idle or Over
//   a further one being written    sectors as before, or as the ones sealed want     RollBack
//   pages being written            sectors as before, or as they are going to be     RollBack
//   last page written, no sync     the same; or, by chance, all as wanted            ... or Complete
//   database synced                all as wanted; perhaps it was reported as done    Complete
//   journal marked                 the mark, or the mark not yet                     Over, Idle or Complete
//
// A reader that meets a journal with work in it cannot settle it under its shared lock, since others may
// look at the pages meanwhile. It gives its lock up, opens the file for writing, which settles the journal,
// and begins again. It reads without that only what needs no settling (pageFile.cpp).
#pragma once

#include "jet/file/diskFile.h"
#include "jet/file/page.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vellums::jet {

inline constexpr std::size_t kSectorSize = 512; // written whole or not at all
inline constexpr std::size_t kSectors = kPageSize / kSectorSize;
using SectorSums = std::array<std::uint64_t, kSectors>;

std::u16string journalPath(const std::u16string& databasePath);

struct JournalHeader {
    std::uint64_t number = 0;
    PageNo pagesBefore = 0;
    std::uint64_t identity = 0;
};

// The checksum of the start of page 0. At its end other programs count who is at work.
std::uint64_t identityOf(ByteView page0);
// The checksum of a sector, by its page and its place there.
std::uint64_t sectorSum(const JournalHeader& header, PageNo page, std::size_t sector, ByteView bytes);

class JournalWriter {
public:
    // Writes over what the file holds, from its start.
    JournalWriter(DiskFile& file, const JournalHeader& header);

    // A segment: begin(), add() for each record, seal(). All throw platform::FileError.
    void begin(std::size_t records, PageNo pagesAfter, bool last);
    // An empty image: none. Gives the place of the image.
    std::uint64_t add(PageNo page, ByteView after, ByteView image);
    // Returns when the segment is on the disk.
    void seal();

    std::size_t sealed() const { return sealed_; }
    // Behind everything so far.
    std::uint64_t end() const { return place_ + buffer_.size(); }
    void readImage(std::uint64_t place, MutableBytes page) const;

private:
    void flush();

    DiskFile& file_;
    JournalHeader header_;
    Bytes buffer_; // written from place_ on
    std::uint64_t place_ = 0;
    std::uint64_t sum_ = 0;
    std::size_t sealed_ = 0;
};

struct JournalRecord {
    PageNo page = 0;
    SectorSums after{};
    SectorSums before{}; // where there is an image
    ByteView image;
};

// A statement as the journal tells it. Reads it piece by piece, whatever its size.
class JournalReader {
public:
    // Nullopt when not even the header was written. Throws platform::FileError.
    static std::optional<JournalReader> open(const DiskFile& file);

    struct Segment {
        std::uint64_t place = 0;
        PageNo pagesAfter = 0;
        bool last = false;
    };
    using Callback = std::function<void(const JournalRecord&)>;

    const JournalHeader& header() const { return header_; }
    // Those that were written to their end. What follows them was never followed by a change of the database.
    const std::vector<Segment>& segments() const { return segments_; }
    void forEachRecord(std::size_t segment, const Callback& callback) const;

private:
    JournalReader(const DiskFile& file, const JournalHeader& header);
    // Nullopt: it was not written to its end. `end` is the place behind it.
    std::optional<Segment> readSegment(
        std::uint64_t place, std::size_t number, std::uint64_t& end, const Callback& callback) const;

    const DiskFile* file_;
    JournalHeader header_;
    std::vector<Segment> segments_;
};

// The file holds something, and is not idle.
bool isHot(const DiskFile& journal);
// It is of this form, whole or not.
bool isOurs(const DiskFile& journal);
bool isDone(const DiskFile& journal);

void markDone(DiskFile& journal);
void markIdle(DiskFile& journal);

} // namespace vellums::jet
