// How a statement of any size becomes all or nothing.
//
// Changed pages wait in memory. When they have become many, and at the end, they are written out: first a
// segment of the journal, then the pages. What must hold meanwhile is numbered in journal.h. Rule 3 is kept
// by writeOut(), which seals before it writes; rule 5 by commit(), which syncs before finish() marks; rule 6
// by closeJournal(), and where it could not, by beginJournal() of the next statement; rule 7 by truncate();
// rule 8 by takeBack(), which whatever throws comes to. Where that fails too, the journal stays as it is, and
// whoever opens the file next does it.
//
// A small statement has one segment and costs two syncs, of the journal and of the database; its mark
// needs none.
//
// Inside a batch a page's state at the mark is in one of three places: in beforeMark_ when it was
// waiting in memory then and changed since; in the file, or in memory, as it is now, when it did not
// change since; else in its first image since the mark. An image that was written since the mark but
// shows an older state carries kBeforeMark.
#include "jet/file/pageFile.h"
#include "jet/file/recovery.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <chrono>

namespace vellums::jet {
namespace {

using platform::FileError;
using platform::FileFault;

constexpr std::uint64_t kBeforeMark = std::uint64_t{1} << 63;
constexpr std::uint64_t kKeptJournal = 16 << 20; // a longer one is cut when it is idle

// Differs from statement to statement, also between processes.
std::uint64_t statementNumber()
{
    static std::atomic<std::uint64_t> count{0};
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    return static_cast<std::uint64_t>(now) * 0x9E3779B97F4A7C15 + ++count;
}

[[noreturn]] void throwNotTakenBack(bool mayBeDone)
{
    throw Error(3043, kFail,
        mayBeDone
            ? u"Disk or network error. Whether the change was made will show when the database is opened "
              u"again."
            : u"Disk or network error. The change could not be taken back; this is done when the database "
              u"is opened again.");
}

} // namespace

PageFile::~PageFile()
{
    if (writer_)
        takeBack();
}

// Runs what writes to the disk. A failure takes the whole statement back.
template <typename Work>
void PageFile::orTakeBack(Work&& work)
{
    try {
        work();
    } catch (const FileError& e) {
        lost_ = true;
        rollBack();
        if (e.fault == FileFault::DiskFull)
            throw Error(3026, kFail, u"Not enough space on disk.");
        throwDiskFailed();
    } catch (...) {
        lost_ = true;
        rollBack();
        throw;
    }
}

void PageFile::makeRoom()
{
    if (dirty_.size() >= PageSource::limits.changedPages)
        orTakeBack([this] { writeOut(false); });
}

// A batch may have written pages beyond the end that it went back to. They are cut off before the sync: a
// crash in between leaves a file of a size that no record wants, and it is rolled back.
void PageFile::commit()
{
    if (lost_)
        throwDiskFailed();
    marked_ = false;
    beforeMark_.clear();
    if (dirty_.empty() && !writer_ && fileEnd_ == pageCount_)
        return;
    orTakeBack([this] {
        writeOut(true);
        if (fileEnd_ > pageCount_) {
            source_.close(); // a file that is mapped cannot be cut
            file_->resize(std::uint64_t{pageCount_} * kPageSize);
        }
        file_->sync();
    });
    finish();
}

// The pages that go are written to the journal as if they were changed: only when it can bring them back is
// the file cut, by commit().
void PageFile::truncate(PageNo pages)
{
    assert(!marked_ && pages <= pageCount_);
    if (mode_ == OpenMode::Write) {
        for (PageNo page = pages; page < source_.pages(); ++page) {
            dirtyPage(page, true);
            makeRoom();
        }
        orTakeBack([this] { writeOut(false); });
    }
    std::erase_if(dirty_, [pages](const auto& changed) { return changed.first >= pages; });
    pageCount_ = pages;
}

void PageFile::rollBack()
{
    const bool mayBeDone = whole_;
    if (!takeBack())
        throwNotTakenBack(mayBeDone);
}

// The header speaks of the file as it was opened, which is the state that a rollback goes back to.
void PageFile::beginJournal()
{
    assert(journal_ && !touched_ && !whole_);
    if (notRetired_) {
        retire(*journal_);
        notRetired_ = false;
    }
    const PageView page0 = source_.read(0);
    writer_.emplace(*journal_, JournalHeader{statementNumber(), source_.pages(), identityOf(page0)});
}

// Writes the changed pages: the segment, then the database. `last`: the statement ends with them. From the
// seal on the statement counts as having touched the file, although nothing may have reached it yet. A state
// at the mark that lay in the file lies in an image now, so its null goes from beforeMark_.
void PageFile::writeOut(bool last)
{
    assert(mode_ != OpenMode::Read && !lost_ && !whole_);
    const std::vector<PageNo> pages = changedPages();
    if (mode_ == OpenMode::Write)
        sealSegment(pages, last);
    for (const PageNo page : pages) {
        file_->writeAt(std::uint64_t{page} * kPageSize, dirty_.at(page)->bytes);
        source_.forget(page);
        fileEnd_ = std::max(fileEnd_, page + 1);
        if (const auto at = beforeMark_.find(page); at != beforeMark_.end() && !at->second)
            beforeMark_.erase(at);
    }
    dirty_.clear();
}

void PageFile::sealSegment(const std::vector<PageNo>& pages, bool last)
{
    if (!writer_)
        beginJournal();
    writer_->begin(pages.size(), pageCount_, last);
    for (const PageNo page : pages) {
        assert(page < pageCount_);
        const bool wanted = needsImage(page);
        const PageView before = wanted ? source_.read(page) : PageView();
        const std::uint64_t place = writer_->add(page, dirty_.at(page)->bytes, before);
        if (wanted && !last)
            noteImage(page, place);
    }
    writer_->seal();
    touched_ = true;
    whole_ = last;
}

// In the order in which they are written: new pages first, so that a full disk shows before an old page
// is overwritten.
std::vector<PageNo> PageFile::changedPages() const
{
    std::vector<PageNo> pages;
    pages.reserve(dirty_.size());
    for (const auto& [page, content] : dirty_)
        pages.push_back(page);
    std::sort(pages.begin(), pages.end());
    const auto firstNew = std::lower_bound(pages.begin(), pages.end(), fileEnd_);
    std::rotate(pages.begin(), firstNew, pages.end());
    return pages;
}

// A changed page whose state at the mark will be overwritten.
bool PageFile::isMarkInFile(PageNo page) const
{
    const auto found = beforeMark_.find(page);
    return marked_ && page < pageCountAtMark_ && found != beforeMark_.end() && !found->second &&
        !hasImageSinceMark(page);
}

// An image is wanted of what the file holds where it is the state before the statement, which only the first
// write destroys, or that at the mark. Pages added by the statement have no state before it.
bool PageFile::needsImage(PageNo page) const
{
    const bool known = page < images_.size() && images_[page] != 0;
    return page < fileEnd_ && ((page < source_.pages() && !known) || isMarkInFile(page));
}

bool PageFile::hasImageSinceMark(PageNo page) const
{
    return page < images_.size() && (images_[page] & kBeforeMark) == 0 && images_[page] != 0 &&
        images_[page] >= journalAtMark_;
}

void PageFile::noteImage(PageNo page, std::uint64_t place)
{
    assert(place != 0 && (place & kBeforeMark) == 0);
    if (page >= images_.size())
        images_.resize(page + std::size_t{1});
    images_[page] = marked_ && !isMarkInFile(page) ? place | kBeforeMark : place;
}

void PageFile::mark()
{
    if (lost_)
        throwDiskFailed();
    marked_ = true;
    pageCountAtMark_ = pageCount_;
    journalAtMark_ = writer_ ? writer_->end() : 0;
    beforeMark_.clear();
}

void PageFile::rollbackToMark()
{
    if (lost_)
        return;
    assert(marked_);
    orTakeBack([this] { putBackMark(); });
    mark();
}

// What was written out since the mark is read from the journal and written out again as any change is. The
// journal is not shortened: its records tell in order what happened to the file, this included.
void PageFile::putBackMark()
{
    for (const auto& [page, before] : beforeMark_) {
        if (before)
            dirty_[page] = before;
        else
            dirty_.erase(page);
    }
    pageCount_ = pageCountAtMark_;
    if (!writer_ || writer_->end() == journalAtMark_)
        return;
    for (PageNo page = 0; page < std::min<std::size_t>(images_.size(), pageCount_); ++page) {
        if (!hasImageSinceMark(page))
            continue;
        auto old = std::make_shared<Page>();
        writer_->readImage(images_[page], old->bytes);
        dirty_[page] = std::move(old);
        if (dirty_.size() >= PageSource::limits.changedPages)
            writeOut(false);
    }
}

// The statement is done, whatever happens now: its journal is complete, and the next one who opens the
// file can tell.
void PageFile::finish()
{
    if (mode_ == OpenMode::Write)
        closeJournal();
    if (pageCount_ == source_.pages() && pageCount_ == fileEnd_)
        return;
    try {
        takeFile();
    } catch (const FileError&) {
        lost_ = true;
    }
}

void PageFile::closeJournal()
{
    assert(writer_ && whole_);
    const bool several = writer_->sealed() > 1;
    writer_.reset();
    images_ = {};
    touched_ = whole_ = false;
    try {
        if (several)
            retire(*journal_);
        else
            markIdle(*journal_);
        if (several && journal_->size() > kKeptJournal)
            journal_->resize(0);
    } catch (const FileError&) { // the statement is done all the same; the next one tries again
        notRetired_ = true;
    }
}

// Puts the file back. False: it could not be done; the journal is left as it is. The map of the file is
// given up first, because a file that is mapped cannot be cut everywhere. Before the first seal nothing of
// the database was written, and dropping the pages in memory is all.
bool PageFile::takeBack() noexcept
{
    dirty_.clear();
    beforeMark_.clear();
    images_.clear();
    marked_ = false;
    pageCount_ = source_.pages();
    if (!writer_)
        return true;
    try {
        const std::size_t sealed = writer_->sealed();
        writer_.reset();
        source_.close();
        if (std::exchange(touched_, false))
            putBack(*file_, *journal_, sealed);
        whole_ = false;
        try {
            retire(*journal_);
        } catch (const FileError&) { // it is rolled back once more then, which changes nothing
            notRetired_ = true;
        }
        takeFile();
        return true;
    } catch (...) {
        lost_ = true;
        return false;
    }
}

} // namespace vellums::jet
