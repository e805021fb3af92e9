// The map of the file serves without copies and without a lock; bytes that are written to the file later
// show in it, so forget() has nothing to do there. For the rest a list holds the latest pages, the last used
// in front, and a table finds a page's place in the list. Both are under one lock, which is not held while
// the disk is read: two threads may read the same page, and the first to come back is kept.
#include "jet/file/pageSource.h"

#include <limits>

namespace vellums::jet {
namespace {

constexpr std::uint64_t kMegabyte = 1 << 20;
constexpr bool kSmallAddresses = sizeof(void*) < 8; // 32 bits: a file of 2 GB does not go into a map

} // namespace

MemoryLimits PageSource::limits = {
    kSmallAddresses ? 256 * kMegabyte : std::numeric_limits<std::uint64_t>::max(),
    4 * kMegabyte / kPageSize,
    4 * kMegabyte / kPageSize,
};

void PageSource::open(const DiskFile& file, std::size_t pageSize)
{
    close();
    pageSize_ = pageSize;
    const std::uint64_t size = file.size();
    if (size / pageSize > kMaxPages)
        throwDamaged(u"the file is longer than 2 GB");
    file_ = &file;
    pages_ = static_cast<PageNo>(size / pageSize);
    endsInPage_ = size % pageSize != 0;
    if (size > limits.mappedBytes)
        return;
    try {
        view_ = file.view();
        mapped_ = static_cast<PageNo>(view_.bytes().size() / pageSize);
    } catch (const platform::FileError&) { // no room for it: the cache serves
    }
}

void PageSource::close() noexcept
{
    view_ = {};
    mapped_ = 0;
    const std::lock_guard guard(lock_);
    places_.clear();
    kept_.clear();
}

PageView PageSource::read(PageNo page) const
{
    if (page < mapped_)
        return PageView(view_.bytes().subspan(std::size_t{page} * pageSize_, pageSize_));
    if (std::shared_ptr<const Page> kept = cached(page))
        return PageView(std::move(kept), pageSize_);
    auto fresh = std::make_shared<Page>();
    try {
        const MutableBytes bytes = MutableBytes(fresh->bytes).first(pageSize_);
        if (file_->readAt(std::uint64_t{page} * pageSize_, bytes) < pageSize_)
            throwDamaged(u"a pointer leads beyond the end of the file");
    } catch (const platform::FileError&) {
        throwDiskFailed();
    }
    keep(page, fresh);
    return PageView(std::move(fresh), pageSize_);
}

// Another thread may have put the page there meanwhile; then that one stays.
void PageSource::keep(PageNo page, const std::shared_ptr<const Page>& content) const
{
    const std::lock_guard guard(lock_);
    const auto [place, added] = places_.try_emplace(page);
    if (!added)
        return;
    try {
        kept_.emplace_front(page, content);
    } catch (...) {
        places_.erase(place);
        throw;
    }
    place->second = kept_.begin();
    if (kept_.size() > limits.cachedPages) {
        places_.erase(kept_.back().first);
        kept_.pop_back();
    }
}

std::shared_ptr<const Page> PageSource::cached(PageNo page) const
{
    const std::lock_guard guard(lock_);
    const auto found = places_.find(page);
    if (found == places_.end())
        return nullptr;
    kept_.splice(kept_.begin(), kept_, found->second);
    return found->second->second;
}

void PageSource::forget(PageNo page)
{
    const std::lock_guard guard(lock_);
    const auto found = places_.find(page);
    if (found == places_.end())
        return;
    kept_.erase(found->second);
    places_.erase(found);
}

} // namespace vellums::jet
