// The pages of one open Access file during one statement.
//
// A PageFile is opened for a statement and closed with it. For reading, pages come from a view of
// the file and nothing is copied. For writing, a page is copied when it is first changed; commit()
// makes all changes lasting together, and without it nothing has happened. Before-images go to
// "<file>-journal" first (journal.h).
#pragma once

#include "jet/file/header.h"
#include "jet/file/pageSource.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace vellums::jet {

enum class OpenMode { Read, Write };

class PageFile {
public:
    // Opens the file under the lock of the mode (see platform/files.h), waiting up to about two
    // seconds for another holder; rolls back a left-over journal; refuses what is no Access file,
    // what is encrypted, has a password or is truncated. Throws Error.
    PageFile(std::u16string path, OpenMode mode);
    ~PageFile();
    PageFile(const PageFile&) = delete;
    PageFile& operator=(const PageFile&) = delete;

    const std::u16string& path() const { return path_; }
    OpenMode mode() const { return mode_; }
    const Header& header() const { return header_; }

    // Number of pages, those added by this statement included.
    PageNo pageCount() const { return pageCount_; }

    // A page as this statement sees it. What is kept of it does not show later changes, unless the page
    // was changed before by the same statement. Throws (damaged file) for a page beyond the end.
    PageView read(PageNo page) const;

    // A page to be changed in place. Only in Write mode.
    MutableBytes write(PageNo page);

    // A page to be written in full: all zeros. One beyond the end makes the file longer, with pages
    // of zeros up to it. Throws 3001 when the file would pass 2 GiB.
    MutableBytes writeNew(PageNo page);

    // Makes all changes lasting; the file is then as if just opened. Throws Error (disk full, ...),
    // and then the file is as before.
    void commit();

    // Inside a batch: remembers the present state of the pages; rollbackToMark() takes back what was
    // changed since. commit() forgets the mark.
    void mark();
    void rollbackToMark();

    // True once something was changed and not yet committed.
    bool changed() const { return !dirty_.empty(); }
    std::size_t changedBytes() const { return dirty_.size() * kPageSize; }

private:
    void open();
    void checkFormat();
    void takeFile();
    Page& dirtyPage(PageNo page, bool keepContent);

    std::u16string path_;
    OpenMode mode_;
    Header header_;
    std::optional<DiskFile> file_;
    std::optional<DiskFile> journal_; // Write mode only
    PageSource source_;
    PageNo pageCount_ = 0;
    std::unordered_map<PageNo, std::shared_ptr<Page>> dirty_;

    // Since mark(): how each page that was changed looked; null where it was not dirty then.
    bool marked_ = false;
    PageNo pageCountAtMark_ = 0;
    std::unordered_map<PageNo, std::shared_ptr<Page>> beforeMark_;
};

// Removes the journal beside the file if it is empty and nobody uses the file at the moment.
void removeIdleJournal(const std::u16string& path) noexcept;

} // namespace vellums::jet
