// How a journal is judged.
//
// A disk that stops may have written any of the sectors that were not synced, in any order. So after a
// crash each sector of a changed page is as it was before the statement, or as some segment wants it.
// Behind the old end of the file anything may stand, as a file may have grown without its content; but
// nobody uses a page there without saying so in a map of free pages, which is among the changed ones. One
// pass over the records reads each page once and notes, a bit for each sector, which of them some record
// explains, and which are as the page's last record wants them. All explained: the journal belongs to this
// file as it is now, and the images may go back. All as in the last records, and the journal written to its
// end: the statement is done. A sector that nothing explains was written by somebody else, and nothing is
// touched. It takes two bytes of memory for a page.
#include "jet/file/recovery.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::uint8_t kAllSectors = 0xFF;

// What the records say about the sectors of the file.
class Comparison {
public:
    Comparison(const DiskFile& database, const JournalReader& journal)
        : database_(database)
        , journal_(journal)
        , size_(database.size())
        , pages_(journal.header().pagesBefore)
        , kept_(keptPages(journal))
    {
        for (std::size_t i = 0; i < journal.segments().size(); ++i)
            journal.forEachRecord(i, [this](const JournalRecord& record) { compare(record); });
    }

    // The file is at least as long as it was, or as the end cuts it, no longer than the records say, the same
    // at the start of page 0, and each sector of a changed page is explained.
    bool belongs() const
    {
        const std::uint64_t least = std::uint64_t{kept_} * kPageSize;
        return size_ >= least && size_ <= std::uint64_t{pages_} * kPageSize &&
            identityOf(database_.read(0, kPageSize)) == journal_.header().identity && allSet(explained_);
    }

    // Pages beyond the final end count for nothing: a batch may have written them and given them back.
    bool isComplete() const
    {
        const JournalReader::Segment& end = journal_.segments().back();
        const std::size_t pages = std::min<std::size_t>(end.pagesAfter, final_.size());
        return end.last && size_ == std::uint64_t{end.pagesAfter} * kPageSize &&
            allSet({final_.data(), pages});
    }

private:
    static bool allSet(std::span<const std::uint8_t> masks)
    {
        return std::all_of(masks.begin(), masks.end(), [](std::uint8_t m) { return m == kAllSectors; });
    }

    // Pages that are there at every moment: those from before, unless the end cuts some of them off.
    static PageNo keptPages(const JournalReader& journal)
    {
        const JournalReader::Segment& end = journal.segments().back();
        const PageNo before = journal.header().pagesBefore;
        return end.last ? std::min(before, end.pagesAfter) : before;
    }

    // Several segments may speak of one page. What any of them explains stays explained; what is final is
    // told by the latest alone. A sector beyond the old end needs no explanation (see above), nor does one
    // that the end has cut off.
    void compare(const JournalRecord& record)
    {
        if (record.page >= explained_.size()) {
            explained_.resize(record.page + std::size_t{1}, kAllSectors); // no record, no question
            final_.resize(record.page + std::size_t{1}, kAllSectors);
            seen_.resize(record.page + std::size_t{1});
        }
        pages_ = std::max(pages_, record.page + 1);
        std::uint8_t explained = seen_[record.page] ? explained_[record.page] : std::uint8_t{0};
        seen_[record.page] = true;
        std::uint8_t final = 0;
        const bool gone = record.page >= kept_ && std::uint64_t{record.page} * kPageSize >= size_;
        const Bytes bytes = database_.read(std::uint64_t{record.page} * kPageSize, kPageSize);
        for (std::size_t i = 0; i < kSectors; ++i) {
            const auto bit = static_cast<std::uint8_t>(1u << i);
            const ByteView rest = ByteView(bytes).subspan(std::min(i * kSectorSize, bytes.size()));
            const ByteView sector = rest.first(std::min(kSectorSize, rest.size()));
            const std::uint64_t sum = sectorSum(journal_.header(), record.page, i, sector);
            if (sum == record.after[i])
                final |= bit;
            if (sum == record.after[i] || (!record.image.empty() && sum == record.before[i]) ||
                record.page >= journal_.header().pagesBefore || gone)
                explained |= bit;
        }
        explained_[record.page] = explained;
        final_[record.page] = final;
    }

    const DiskFile& database_;
    const JournalReader& journal_;
    std::uint64_t size_;
    PageNo pages_; // the file has no more
    PageNo kept_;
    std::vector<bool> seen_;
    std::vector<std::uint8_t> explained_; // by page, a bit for each sector
    std::vector<std::uint8_t> final_;
};

} // namespace

JournalVerdict judgeJournal(const DiskFile& database, const DiskFile& journal)
{
    if (!isHot(journal))
        return JournalVerdict::Idle;
    if (isDone(journal))
        return JournalVerdict::Over;
    if (!isOurs(journal))
        return JournalVerdict::Foreign;
    const std::optional<JournalReader> reader = JournalReader::open(journal);
    if (!reader || reader->segments().empty())
        return JournalVerdict::Over;
    const Comparison comparison(database, *reader);
    if (!comparison.belongs())
        return JournalVerdict::Foreign;
    return comparison.isComplete() ? JournalVerdict::Complete : JournalVerdict::RollBack;
}

void putBack(DiskFile& database, const DiskFile& journal, std::size_t segments)
{
    const std::optional<JournalReader> reader = JournalReader::open(journal);
    // Fewer segments than were sealed: the disk no longer gives back what was synced. Putting back what is
    // left would mix two states, so nothing is.
    if (!reader || reader->segments().size() < segments)
        throw platform::FileError{platform::FileFault::Failed, 0};
    for (std::size_t i = reader->segments().size(); i-- > 0;)
        reader->forEachRecord(i, [&](const JournalRecord& record) {
            if (!record.image.empty())
                database.writeAt(std::uint64_t{record.page} * kPageSize, record.image);
        });
    const std::uint64_t size = std::uint64_t{reader->header().pagesBefore} * kPageSize;
    if (database.size() != size)
        database.resize(size);
    database.sync();
}

void retire(DiskFile& journal)
{
    markDone(journal);
    journal.sync();
    markIdle(journal);
}

} // namespace vellums::jet
