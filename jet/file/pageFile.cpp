// Opening a file under its lock, and the pages as a statement sees them.
//
// The lock of the database file is taken first and is the only one that counts; the journal is opened under
// it, so that no two processes change it at once. Nothing is read from the database before a left-over
// journal has been settled. Locks are asked for again and again for about two seconds, since a statement of
// another process holds them no longer than it runs. A file that Access has open is not touched (lockFile.h).
//
// A page is either dirty, a copy in memory that belongs to this statement, or as the disk has it. read()
// gives the first where there is one. dirtyPage() makes the copy and, inside a batch, notes before the first
// change since the mark what the page was like: a copy if it was dirty, else null, which stands for what is
// in the file.
#include "jet/file/pageFile.h"

#include "jet/file/lockFile.h"
#include "jet/file/recovery.h"
#include "text/decimal.h"

#include <algorithm>
#include <exception>
#include <thread>

namespace vellums::jet {

namespace {

using platform::Access;
using platform::File;
using platform::FileError;
using platform::FileFault;

constexpr auto kRetryPause = std::chrono::milliseconds(5);

[[noreturn]] void throwInUse(const std::u16string& path)
{
    const OpenElsewhere elsewhere = openElsewhere(path);
    // Only programs of ours leave a journal: where one lies beside the file, one of them most likely writes.
    if (elsewhere == OpenElsewhere::No && platform::fileExists(journalPath(path)))
        throw Error(3218, kFail, u"Could not update; currently locked.");
    std::u16string text = u"Could not use '" + path + u"'; file already in use.";
    if (elsewhere == OpenElsewhere::Perhaps)
        text += u" If no other program has it open, remove '" + lockFilePath(path) + u"'.";
    throw Error(3045, kFail, text);
}

[[noreturn]] void throwOpenError(const std::u16string& path, FileFault fault)
{
    switch (fault) {
    case FileFault::NotFound:
        throw Error(3024, kFail, u"Could not find file '" + path + u"'.");
    case FileFault::FolderNotFound:
        throw Error(3044, kFail,
            u"'" + path +
                u"' is not a valid path. Make sure that the path name is spelled correctly and that you are "
                u"connected to the server on which the file resides.");
    case FileFault::InUse:
        throwInUse(path);
    case FileFault::ReadOnly:
        throw Error(3073, kFail, u"Operation must use an updateable query.");
    case FileFault::Denied:
        throw Error(3051, kFail,
            u"The database engine cannot open the file '" + path +
                u"'. It is already opened exclusively by another user, or you need permission to view its "
                u"data.");
    case FileFault::DiskFull:
        throw Error(3026, kFail, u"Not enough space on disk.");
    case FileFault::Exists:
    case FileFault::Failed:
        break;
    }
    throw Error(3043, kFail, u"Disk or network error.");
}

// Asks for a file until it can be had.
template <typename Open>
File waiting(const std::u16string& path, Open&& open)
{
    const auto deadline = std::chrono::steady_clock::now() + PageFile::longestWait;
    for (;;) {
        try {
            return open();
        } catch (const FileError& e) {
            if (e.fault != FileFault::InUse || std::chrono::steady_clock::now() >= deadline)
                throwOpenError(path, e.fault);
        }
        std::this_thread::sleep_for(kRetryPause);
    }
}

// The lock file is looked at once the database is held: from then on nobody else can open it.
File openDatabase(const std::u16string& path, Access access)
{
    return waiting(path, [&] {
        File file(path, access);
        if (openElsewhere(path) != OpenElsewhere::No)
            throw FileError{FileFault::InUse, 0};
        return file;
    });
}

File openJournalFile(const std::u16string& path, Access access)
{
    return waiting(path, [&] { return File(path, access); });
}

// Opens the journal of a file that is held for writing. A folder that takes no new file makes the
// database read-only.
DiskFile openJournal(const std::u16string& path)
{
    try {
        const std::u16string journal = journalPath(path);
        DiskFile file(openJournalFile(journal, Access::WriteOrCreate), DiskFile::Role::Journal);
        // Whoever made it may have died before its entry in the folder was lasting.
        if (file.size() == 0)
            DiskFile::syncFolderOf(journal);
        return file;
    } catch (const Error& e) {
        if (e.native == 3051 || e.native == 3044)
            throw Error(3073, kFail, u"Operation must use an updateable query.");
        throw;
    }
}

// Moves a journal that belongs to something else to a name that nothing has.
std::u16string setJournalAside(const std::u16string& path)
{
    const std::u16string journal = journalPath(path);
    for (int number = 1;; ++number) {
        const std::u16string target = journal + u"-unused" + text::decimal(number);
        if (platform::fileExists(target) || platform::folderExists(target))
            continue;
        try {
            platform::moveToFreeName(journal, target);
            return target;
        } catch (const FileError& e) {
            if (e.fault != FileFault::Exists)
                throw;
        }
    }
}

DiskFile readJournal(const std::u16string& path)
{
    return {openJournalFile(journalPath(path), Access::Read), DiskFile::Role::Journal};
}

bool journalIsHot(const std::u16string& path)
{
    if (!platform::fileExists(journalPath(path)))
        return false;
    return isHot(readJournal(path));
}

} // namespace

std::chrono::milliseconds PageFile::longestWait{2000};

PageFile::PageFile(std::u16string path, OpenMode mode, std::u16string password)
    : path_(std::move(path))
    , mode_(mode)
    , password_(std::move(password))
{
    try {
        open();
    } catch (const FileError& e) {
        throwOpenError(path_, e.fault);
    }
}

void PageFile::open()
{
    if (mode_ == OpenMode::Read) {
        openForReading();
    } else {
        file_.emplace(openDatabase(path_, Access::Write), DiskFile::Role::Database);
        readHeader();
    }
    if (mode_ == OpenMode::Write) {
        journal_.emplace(openJournal(path_));
        settleJournal();
    }
    takeFile();
    checkPages();
}

// Before the journal is looked at, since no statement changes what it reads, and what is refused is to stay
// as it is, the folder too.
void PageFile::readHeader()
{
    header_ = parseHeader(file_->read(0, kPageSize), path_, password_);
    if (mode_ == OpenMode::Write && !format().writable)
        throw Error(3027, kPermissionDenied,
            u"Cannot update. The database '" + path_ +
                u"' is a file of Access 97, and such files are only read.");
}

// A journal with work in it is settled by opening the file for writing, and closing it again; between the
// locks anything may happen, so the journal is looked at anew afterwards. Where the exclusive lock cannot be
// had, in a folder that is read-only or while others read, the verdict decides: a file that holds parts of a
// statement is refused, with the reason of the first attempt; any other is sound as it lies, and is read.
void PageFile::openForReading()
{
    const auto openShared = [this] {
        file_.emplace(openDatabase(path_, Access::Read), DiskFile::Role::Database);
    };
    openShared();
    readHeader();
    if (!format().writable || !journalIsHot(path_))
        return;
    file_.reset();
    std::exception_ptr refusal;
    try {
        journalSetAside_ = PageFile(path_, OpenMode::Write, password_).journalSetAside();
        removeIdleJournal(path_);
    } catch (const Error&) {
        refusal = std::current_exception();
    }
    openShared();
    readHeader();
    if (!journalIsHot(path_) || judgeJournal(*file_, readJournal(path_)) != JournalVerdict::RollBack)
        return;
    if (refusal)
        std::rethrow_exception(refusal);
    throwOpenError(path_, FileFault::InUse);
}

// Finishes or takes back what an interrupted statement left behind. A complete one was perhaps never synced,
// and must be before its journal goes; one that is over touched nothing that could still be missing.
void PageFile::settleJournal()
{
    switch (judgeJournal(*file_, *journal_)) {
    case JournalVerdict::Idle:
        return;
    case JournalVerdict::Over:
        break;
    case JournalVerdict::Complete:
        file_->sync();
        break;
    case JournalVerdict::RollBack:
        putBack(*file_, *journal_, 0);
        break;
    case JournalVerdict::Foreign:
        journal_.reset();
        journalSetAside_ = setJournalAside(path_);
        journal_.emplace(openJournal(path_));
        return;
    }
    retire(*journal_);
}

void PageFile::takeFile()
{
    source_.open(*file_, format().pageSize);
    pageCount_ = fileEnd_ = source_.pages();
}

void PageFile::checkPages()
{
    const auto kindOf = [&](PageNo page) {
        const PageView view = read(page);
        return load<std::uint16_t>(view, 0);
    };
    if (pageCount_ < 3 || kindOf(1) != 0x0101 || kindOf(2) != 0x0102)
        throwDamaged(u"the first pages of '" + path_ + u"' are not those of a database");
    if (mode_ != OpenMode::Read && source_.endsInPage())
        throwDamaged(u"'" + path_ + u"' ends in the middle of a page");
}

PageView PageFile::read(PageNo page) const
{
    if (page >= pageCount_)
        throwDamaged(u"a pointer leads beyond the end of the file");
    if (!dirty_.empty()) {
        const auto found = dirty_.find(page);
        if (found != dirty_.end())
            return PageView(found->second);
    }
    return source_.read(page);
}

Page& PageFile::dirtyPage(PageNo page, bool keepContent)
{
    if (mode_ == OpenMode::Read)
        throw Error(3027, kPermissionDenied, u"Cannot update. Database or object is read-only.");
    if (lost_)
        throwDiskFailed();
    const auto found = dirty_.find(page);
    if (marked_ && !beforeMark_.contains(page))
        beforeMark_[page] = found == dirty_.end() ? nullptr : std::make_shared<Page>(*found->second);
    if (found != dirty_.end())
        return *found->second;
    auto fresh = std::make_shared<Page>();
    if (keepContent) {
        const PageView old = read(page);
        std::copy(old.bytes().begin(), old.bytes().end(), fresh->bytes.begin());
    }
    return *dirty_.emplace(page, std::move(fresh)).first->second;
}

MutableBytes PageFile::write(PageNo page)
{
    return dirtyPage(page, true).bytes;
}

MutableBytes PageFile::writeNew(PageNo page)
{
    if (page >= kMaxPages)
        throw Error(3001, kFail, u"Invalid argument. The database has reached its largest size of 2 GB.");
    // The pages in between become dirty too, so that nothing undefined stands inside the file.
    for (; pageCount_ <= page; ++pageCount_)
        dirtyPage(pageCount_, false);
    Page& fresh = dirtyPage(page, false);
    fresh.bytes.fill(std::byte{0});
    return fresh.bytes;
}

void removeIdleJournal(const std::u16string& path) noexcept
{
    try {
        const std::u16string journal = journalPath(path);
        if (!platform::fileExists(journal))
            return;
        const DiskFile database(File(path, Access::Write), DiskFile::Role::Database);
        // Beside a file that is only read it is none of ours.
        const Format* const format = formatOf(database.read(0, kPageSize));
        if (format == nullptr || !format->writable)
            return;
        const bool hot = journalIsHot(path); // it is closed again: an open file is not removed
        if (!hot && platform::removeFile(journal))
            platform::syncFolderOf(journal);
    } catch (...) { // somebody else is at work; the last one out removes it
    }
}

} // namespace vellums::jet
