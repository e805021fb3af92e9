// The pages of one open Access file during one statement.
//
// A PageFile is opened for a statement and closed with it. A page is copied when it is first changed;
// commit() makes all changes lasting together, and without it nothing has happened. A statement of any
// size takes a few megabytes: makeRoom() writes what it has changed so far, and the journal (journal.h)
// can take it back.
#pragma once

#include "jet/file/header.h"
#include "jet/file/journal.h"
#include "jet/file/pageSource.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace vellums::jet {

enum class OpenMode {
    Read,
    Write,
    Scratch, // a file that nobody relies on yet: changed without a journal, and not to be taken back
};

// Opening and reading are in pageFile.cpp, what a transaction does to the disk in pageFileTransaction.cpp.
class PageFile {
public:
    // How long another holder of the file is waited for. Shorter in tests.
    static std::chrono::milliseconds longestWait;

    // Opens the file under the lock of the mode (see platform/files.h), waiting for another holder; settles a
    // left-over journal; refuses what is no Access file, what is encrypted, has another password, is
    // truncated, or is open in Access, and to write what is only read. Throws Error.
    PageFile(std::u16string path, OpenMode mode, std::u16string password = {});
    ~PageFile();
    PageFile(const PageFile&) = delete;
    PageFile& operator=(const PageFile&) = delete;

    const std::u16string& path() const { return path_; }
    OpenMode mode() const { return mode_; }
    const std::u16string& password() const { return password_; } // as it was given
    const Header& header() const { return header_; }
    const Format& format() const { return *header_.format; }
    // Where a journal that does not belong to the file as it is was moved when it was opened; empty: there
    // was none.
    const std::u16string& journalSetAside() const { return journalSetAside_; }

    // Number of pages, those added by this statement included.
    PageNo pageCount() const { return pageCount_; }

    // A page as this statement sees it, to be looked at until the next commit() or failure. It does not show
    // later changes, unless the page was changed before by the same statement or is written by makeRoom().
    // Throws (damaged file) for a page beyond the end.
    PageView read(PageNo page) const;

    // A page to be changed in place. Only in Write mode.
    MutableBytes write(PageNo page);

    // A page to be written in full: all zeros. One beyond the end makes the file longer, with pages
    // of zeros up to it. Throws 3001 when the file would pass 2 GiB.
    MutableBytes writeNew(PageNo page);

    // Between the changes of rows: where much has changed, writes it to the file, still to be taken back.
    // Ranges that write() gave are over. Throws Error as commit() does.
    void makeRoom();

    // Cuts the file off behind so many pages; what was changed behind them is forgotten. Not inside a batch.
    void truncate(PageNo pages);

    // Makes all changes lasting; the file is then as if just opened. Throws Error (disk full, ...), and
    // then the file is as before, or the error says that it could not be taken back. Nothing can be changed
    // afterwards.
    void commit();

    // Takes back everything since the last commit(), as the destructor does, which cannot tell when it
    // fails. Throws Error.
    void rollBack();

    // Inside a batch: remembers the present state of the pages; rollbackToMark() takes back what was
    // changed since. commit() forgets the mark. Throw Error, and then everything is taken back.
    void mark();
    void rollbackToMark();

private:
    void open();
    void readHeader();
    void checkPages();
    void openForReading();
    void settleJournal();
    void takeFile();
    Page& dirtyPage(PageNo page, bool keepContent);

    template <typename Work>
    void orTakeBack(Work&& work);
    void beginJournal();
    void writeOut(bool last);
    void sealSegment(const std::vector<PageNo>& pages, bool last);
    std::vector<PageNo> changedPages() const;
    bool isMarkInFile(PageNo page) const;
    bool needsImage(PageNo page) const;
    bool hasImageSinceMark(PageNo page) const;
    void noteImage(PageNo page, std::uint64_t place);
    void putBackMark();
    void finish();
    void closeJournal();
    bool takeBack() noexcept;

    std::u16string path_;
    OpenMode mode_;
    std::u16string password_;
    Header header_;
    std::optional<DiskFile> file_;
    std::optional<DiskFile> journal_; // Write mode only
    PageSource source_;
    PageNo pageCount_ = 0;
    std::unordered_map<PageNo, std::shared_ptr<Page>> dirty_;
    std::u16string journalSetAside_;

    // Once something of the statement was written.
    std::optional<JournalWriter> writer_;
    PageNo fileEnd_ = 0;                // pages in the file
    bool touched_ = false;              // pages of the database were written
    bool whole_ = false;                // the last segment is on the disk
    bool notRetired_ = false;           // the journal of a statement before may not be marked on the disk
    bool lost_ = false;                 // the statement failed
    std::vector<std::uint64_t> images_; // by page: place of the latest image, 0: none; kBeforeMark

    // Since mark(): how each changed page looked; null where that is in the file or the journal.
    bool marked_ = false;
    PageNo pageCountAtMark_ = 0;
    std::uint64_t journalAtMark_ = 0; // images from here on are of the state at the mark
    std::unordered_map<PageNo, std::shared_ptr<Page>> beforeMark_;
};

// Removes the journal beside the file if it is empty and nobody uses the file at the moment.
void removeIdleJournal(const std::u16string& path) noexcept;

} // namespace vellums::jet
