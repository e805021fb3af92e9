// The pages of one open Access file during one statement.
//
// A PageFile is opened for a statement and closed with it. For reading, pages come from a view of
// the file and nothing is copied. For writing, a page is copied when it is first changed; commit()
// makes all changes lasting together, and without it nothing has happened. Before-images go to
// "<file>-journal" first (journal.h).
#pragma once

#include "jet/file/bytes.h"
#include "jet/file/header.h"
#include "platform/files.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace vellums::jet {

using PageNo = std::uint32_t;

inline constexpr std::size_t kPageSize = 4096; // Jet 4 and ACE
inline constexpr PageNo kMaxPages = 524288;    // 2 GiB

// A row's place: its page and its entry in the page's row table.
struct RowRef {
    PageNo page = 0;
    std::uint8_t row = 0;

    friend auto operator<=>(const RowRef&, const RowRef&) = default;
};

// Pointers in the file: the low byte is the row, the upper three the page.
inline RowRef rowRefOf(std::uint32_t pointer)
{
    return {pointer >> 8, static_cast<std::uint8_t>(pointer & 0xFF)};
}
inline std::uint32_t pointerTo(RowRef ref)
{
    return ref.page << 8 | ref.row;
}

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

    // A page as this statement sees it. The range stays valid until commit(); once write() was called
    // for the same page, earlier ranges show the page as it was before. Throws (damaged file) for a
    // page beyond the end.
    ByteView read(PageNo page) const;

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

    // Called before each write, sync and resize of the file or its journal; what it throws stands for
    // the disk that stops there. For tests of what a crash leaves behind.
    static std::function<void()> beforeDiskOperation;

private:
    struct Page {
        std::array<std::byte, kPageSize> bytes;
    };

    void open();
    void checkFormat();
    void takeView();
    Page& dirtyPage(PageNo page, bool keepContent);

    std::u16string path_;
    OpenMode mode_;
    Header header_;
    std::optional<platform::File> file_;
    std::optional<platform::File> journal_; // Write mode only
    platform::File::View view_;
    PageNo filePages_ = 0; // pages in the file as it was opened
    PageNo pageCount_ = 0;
    bool wholePages_ = true; // the file's length is a multiple of the page size
    std::unordered_map<PageNo, std::unique_ptr<Page>> dirty_;

    // Since mark(): how each page that was changed looked; null where it was not dirty then.
    bool marked_ = false;
    PageNo pageCountAtMark_ = 0;
    std::unordered_map<PageNo, std::unique_ptr<Page>> beforeMark_;
};

// Removes the journal beside the file if it is empty and nobody uses the file at the moment.
void removeIdleJournal(const std::u16string& path) noexcept;

} // namespace vellums::jet
