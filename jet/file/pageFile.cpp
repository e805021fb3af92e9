#include "jet/file/pageFile.h"

#include "jet/file/journal.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace vellums::jet {

std::function<void()> PageFile::beforeDiskOperation;

namespace {

using platform::Access;
using platform::File;
using platform::FileError;
using platform::FileFault;

constexpr auto kLongestWait = std::chrono::milliseconds(2000);
constexpr auto kRetryPause = std::chrono::milliseconds(5);

void step()
{
    if (PageFile::beforeDiskOperation)
        PageFile::beforeDiskOperation();
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
        if (platform::fileExists(journalPath(path))) // one of ours is writing
            throw Error(3218, kFail, u"Could not update; currently locked.");
        throw Error(3045, kFail, u"Could not use '" + path + u"'; file already in use.");
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

File openWaiting(const std::u16string& path, Access access)
{
    const auto deadline = std::chrono::steady_clock::now() + kLongestWait;
    for (;;) {
        try {
            return File(path, access);
        } catch (const FileError& e) {
            if (e.fault != FileFault::InUse || std::chrono::steady_clock::now() >= deadline)
                throwOpenError(path, e.fault);
        }
        std::this_thread::sleep_for(kRetryPause);
    }
}

// Opens the journal of a file that is held for writing. A folder that takes no new file makes the
// database read-only.
File openJournal(const std::u16string& path)
{
    try {
        const std::u16string journal = journalPath(path);
        const bool existed = platform::fileExists(journal);
        File file = openWaiting(journal, Access::WriteOrCreate);
        if (!existed)
            platform::syncFolderOf(journal);
        return file;
    } catch (const Error& e) {
        if (e.native == 3051 || e.native == 3044)
            throw Error(3073, kFail, u"Operation must use an updateable query.");
        throw;
    }
}

bool journalIsHot(const std::u16string& path)
{
    if (!platform::fileExists(journalPath(path)))
        return false;
    return isHot(openWaiting(journalPath(path), Access::Read));
}

// Differs from statement to statement, also between processes.
std::uint64_t statementNumber()
{
    static std::atomic<std::uint64_t> count{0};
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    return static_cast<std::uint64_t>(now) * 0x9E3779B97F4A7C15 + ++count;
}

} // namespace

PageFile::PageFile(std::u16string path, OpenMode mode)
    : path_(std::move(path))
    , mode_(mode)
{
    try {
        open();
    } catch (const FileError& e) {
        throwOpenError(path_, e.fault);
    }
}

PageFile::~PageFile() = default;

void PageFile::open()
{
    if (mode_ == OpenMode::Read) {
        file_.emplace(openWaiting(path_, Access::Read));
        if (journalIsHot(path_)) {
            file_.reset();
            const PageFile recovered(path_, OpenMode::Write);
        }
        if (!file_)
            file_.emplace(openWaiting(path_, Access::Read));
    } else {
        file_.emplace(openWaiting(path_, Access::Write));
        journal_.emplace(openJournal(path_));
        if (isHot(*journal_))
            rollBack(*file_, *journal_, step);
    }
    takeView();
    checkFormat();
}

void PageFile::takeView()
{
    view_ = file_->view();
    const std::uint64_t size = view_.bytes().size();
    if (size / kPageSize > kMaxPages)
        throwDamaged(u"the file is longer than 2 GB");
    filePages_ = static_cast<PageNo>(size / kPageSize);
    wholePages_ = size % kPageSize == 0;
    pageCount_ = filePages_;
}

void PageFile::checkFormat()
{
    header_ = parseHeader(view_.bytes().first(std::min(view_.bytes().size(), kPageSize)), path_);
    const auto kindOf = [&](PageNo page) { return load<std::uint16_t>(read(page), 0); };
    if (filePages_ < 3 || kindOf(1) != 0x0101 || kindOf(2) != 0x0102)
        throwDamaged(u"the first pages of '" + path_ + u"' are not those of a database");
    if (mode_ == OpenMode::Write && !wholePages_)
        throwDamaged(u"'" + path_ + u"' ends in the middle of a page");
}

ByteView PageFile::read(PageNo page) const
{
    if (!dirty_.empty()) {
        const auto found = dirty_.find(page);
        if (found != dirty_.end())
            return found->second->bytes;
    }
    if (page >= filePages_)
        throwDamaged(u"a pointer leads beyond the end of the file");
    return view_.bytes().subspan(std::size_t{page} * kPageSize, kPageSize);
}

PageFile::Page& PageFile::dirtyPage(PageNo page, bool keepContent)
{
    if (mode_ != OpenMode::Write)
        throw Error(3027, kPermissionDenied, u"Cannot update. Database or object is read-only.");
    auto [place, added] = dirty_.try_emplace(page);
    if (marked_ && !beforeMark_.contains(page))
        beforeMark_[page] = added ? nullptr : std::make_unique<Page>(*place->second);
    if (added) {
        place->second = std::make_unique<Page>();
        if (keepContent) {
            if (page >= filePages_) {
                dirty_.erase(place);
                throwDamaged(u"a pointer leads beyond the end of the file");
            }
            const ByteView old = view_.bytes().subspan(std::size_t{page} * kPageSize, kPageSize);
            std::copy(old.begin(), old.end(), place->second->bytes.begin());
        }
    }
    return *place->second;
}

MutableBytes PageFile::write(PageNo page)
{
    return dirtyPage(page, true).bytes;
}

MutableBytes PageFile::writeNew(PageNo page)
{
    if (page >= kMaxPages)
        throw Error(3001, kFail, u"Invalid argument. The database has reached its largest size of 2 GB.");
    for (; pageCount_ <= page; ++pageCount_)
        dirtyPage(pageCount_, false);
    Page& fresh = dirtyPage(page, false);
    fresh.bytes.fill(std::byte{0});
    return fresh.bytes;
}

void PageFile::mark()
{
    marked_ = true;
    pageCountAtMark_ = pageCount_;
    beforeMark_.clear();
}

void PageFile::rollbackToMark()
{
    for (auto& [page, before] : beforeMark_) {
        if (before)
            dirty_[page] = std::move(before);
        else
            dirty_.erase(page);
    }
    pageCount_ = pageCountAtMark_;
    mark();
}

void PageFile::commit()
{
    marked_ = false;
    beforeMark_.clear();
    if (dirty_.empty())
        return;

    std::vector<JournalPage> pages;
    pages.reserve(dirty_.size());
    for (const auto& [page, content] : dirty_) {
        ByteView before;
        if (page < filePages_)
            before = view_.bytes().subspan(std::size_t{page} * kPageSize, kPageSize);
        pages.push_back({page, before, content->bytes});
    }
    // New pages first, so that a full disk shows before an old page is overwritten.
    std::sort(pages.begin(), pages.end(), [](const JournalPage& a, const JournalPage& b) {
        return a.before.empty() != b.before.empty() ? a.before.empty() : a.page < b.page;
    });
    try {
        const Bytes journal = makeJournal(pages, filePages_, statementNumber(), read(0));
        step();
        journal_->writeAt(0, journal);
        step();
        journal_->sync();
        for (const JournalPage& page : pages) {
            step();
            file_->writeAt(std::uint64_t{page.page} * kPageSize, page.after);
        }
        step();
        file_->sync();
        step();
        markIdle(*journal_);
    } catch (const FileError& e) {
        view_ = {};
        rollBack(*file_, *journal_, step);
        dirty_.clear();
        takeView();
        if (e.fault == FileFault::DiskFull)
            throw Error(3026, kFail, u"Not enough space on disk.");
        throw Error(3043, kFail, u"Disk or network error.");
    }
    dirty_.clear();
    if (pageCount_ != filePages_)
        takeView();
}

void removeIdleJournal(const std::u16string& path) noexcept
{
    try {
        const std::u16string journal = journalPath(path);
        if (!platform::fileExists(journal))
            return;
        const File database(path, Access::Write);
        const bool hot = isHot(File(journal, Access::Read)); // closed again: an open file is not removed
        if (!hot && platform::removeFile(journal))
            platform::syncFolderOf(journal);
    } catch (...) { // somebody else is at work; the last one out removes it
    }
}

} // namespace vellums::jet
