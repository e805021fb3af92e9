// The pages of a file as they lie on the disk.
//
// The part that the file had when it was opened is looked at through a map of the file, with nothing
// copied. A file that is too large for the address space, and pages that were added later, come through
// a small cache; whoever looks at such a page keeps a share of it, so it stays when the cache lets it go.
#pragma once

#include "jet/file/diskFile.h"
#include "jet/file/page.h"

#include <list>
#include <mutex>
#include <unordered_map>

namespace vellums::jet {

// What the engine allows itself in memory. Tests make it small.
struct MemoryLimits {
    std::uint64_t mappedBytes; // a longer file is not mapped
    std::size_t cachedPages;   // of a file, or part of a file, that is not mapped
    std::size_t changedPages;  // that a statement collects before it writes them
};

class PageSource {
public:
    static MemoryLimits limits;

    // Takes the file as it is now, in pages of that size. It must stay open. Throws Error (longer than 2 GB),
    // platform::FileError.
    void open(const DiskFile& file, std::size_t pageSize);
    // Gives up map and cache; before a file is cut.
    void close() noexcept;

    PageNo pages() const { return pages_; } // whole ones, when it was opened
    bool endsInPage() const { return endsInPage_; }

    // A page of the file, by several threads at once too. Throws (damaged file) beyond its end.
    PageView read(PageNo page) const;

    // The page was written: what is kept of it is old.
    void forget(PageNo page);

private:
    using Kept = std::list<std::pair<PageNo, std::shared_ptr<const Page>>>; // the latest one first

    std::shared_ptr<const Page> cached(PageNo page) const;
    void keep(PageNo page, const std::shared_ptr<const Page>& content) const;

    const DiskFile* file_ = nullptr;
    std::size_t pageSize_ = kPageSize;
    platform::File::View view_;
    PageNo mapped_ = 0;
    PageNo pages_ = 0;
    bool endsInPage_ = false;

    mutable std::mutex lock_; // of what follows
    mutable Kept kept_;
    mutable std::unordered_map<PageNo, Kept::iterator> places_;
};

} // namespace vellums::jet
