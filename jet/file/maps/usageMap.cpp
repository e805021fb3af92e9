// Maps of pages: reading them bit by bit, and keeping them in a form that holds their pages.
//
// An inline map covers a window of pages. When a page outside is added, the window moves so that all pages
// of the set are inside; where no window is large enough the row becomes a map of form 1, at its present
// length, and the pages are added again. It never turns back.
//
// Nothing is kept between calls, because a row of a map moves when another one on its page grows.
#include "jet/file/maps/usageMap.h"

#include "jet/file/maps/freePages.h"
#include "jet/file/maps/mapRow.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {

UsageMap::UsageMap(PageFile& file, RowRef place)
    : file_(file)
    , place_(place)
{
    const MapRow row(file, place);
    (void)row;
}

bool UsageMap::contains(PageNo page) const
{
    const MapRow row(file_, place_);
    if (row.form() == 0)
        return page >= row.start() && bitAt(row.bits(), page - row.start());
    const PageNo bitmap = row.pointer(file_, page / spanOf(file_));
    return bitmap != 0 && bitmapBitAt(file_, bitmap, page % spanOf(file_));
}

std::vector<PageNo> UsageMap::pages() const
{
    std::vector<PageNo> pages;
    const MapRow row(file_, place_);
    const auto collect = [&](std::uint64_t base, ByteView bits) {
        eachBit(bits, [&](std::size_t bit) {
            const std::uint64_t page = base + bit;
            if (page < file_.pageCount() && page != 0)
                pages.push_back(static_cast<PageNo>(page));
            return page < file_.pageCount();
        });
    };
    if (row.form() == 0) {
        collect(row.start(), row.bits());
        return pages;
    }
    for (std::size_t i = 0; i < row.pointerCount(); ++i)
        if (const PageNo bitmap = row.pointer(file_, i); bitmap != 0) {
            const PageView bits = bitmapOf(file_, bitmap);
            collect(std::uint64_t{i} * spanOf(file_), bits);
        }
    return pages;
}

PageNo UsageMap::highestBelow(PageNo below) const
{
    const MapRow row(file_, place_);
    below = std::min(below, file_.pageCount());
    if (row.form() == 0) {
        const PageNo start = row.start();
        if (below <= start)
            return 0;
        const auto bit = highestBit(row.bits(), below - start);
        return bit ? start + static_cast<PageNo>(*bit) : 0;
    }
    for (std::size_t i = row.pointerCount(); i-- > 0;) {
        const PageNo bitmap = row.pointer(file_, i);
        const auto base = static_cast<PageNo>(i * spanOf(file_));
        if (bitmap == 0 || below <= base)
            continue;
        const PageView bits = bitmapOf(file_, bitmap);
        if (const auto bit = highestBit(bits, below - base))
            return base + static_cast<PageNo>(*bit);
    }
    return 0;
}

std::vector<PageNo> UsageMap::bitmapPages() const
{
    return referencedPages(file_, place_);
}

void UsageMap::add(PageNo page, FreePages& free)
{
    assert(page != 0);
    const MapRow row(file_, place_);
    if (row.form() == 1) {
        const std::size_t span = page / kSpan;
        if (span >= row.pointerCount())
            throwDamaged(u"a usage map is too short for the file");
        PageNo bitmap = row.pointer(file_, span);
        if (bitmap == 0) {
            bitmap = free.allocate();
            initBitmapPage(file_.writeNew(bitmap), std::byte{0});
            // Read anew: where the map lies on page 1, allocate() has changed that page.
            const MapRow now(file_, place_);
            Bytes changed(now.bytes.begin(), now.bytes.end());
            store<std::uint32_t>(changed, 1 + 4 * span, bitmap);
            replaceMapRow(file_, place_, changed);
        }
        setBit(writableBitmap(file_, bitmap), page % kSpan, true);
        return;
    }

    std::vector<PageNo> set = pages();
    const PageNo start = row.start();
    Bytes changed(row.bytes.begin(), row.bytes.end());
    const std::size_t capacity = row.bits().size() * 8;
    if (set.empty() || page < start || page - start >= capacity) {
        if (!contains(page))
            set.push_back(page);
        const auto [least, most] = std::minmax_element(set.begin(), set.end());
        const PageNo low = *least / 8 * 8; // a window starts at a whole byte of bits
        // A start of 0 is kept as long as it serves, as in a fresh map.
        const PageNo newStart = *most < capacity ? 0 : low;
        if (*most - newStart < capacity) {
            std::fill(changed.begin() + 1, changed.end(), std::byte{0});
            store<std::uint32_t>(changed, 1, newStart);
            for (const PageNo member : set)
                setBit(MutableBytes(changed).subspan(kInlineHeader), member - newStart, true);
        } else {
            std::fill(changed.begin(), changed.end(), std::byte{0});
            changed[0] = std::byte{1};
            replaceMapRow(file_, place_, changed);
            for (const PageNo member : set)
                add(member, free);
            return;
        }
    } else {
        setBit(MutableBytes(changed).subspan(kInlineHeader), page - start, true);
    }
    replaceMapRow(file_, place_, changed);
}

void UsageMap::remove(PageNo page)
{
    if (!contains(page))
        return;
    const MapRow row(file_, place_);
    if (row.form() == 1) {
        setBit(writableBitmap(file_, row.pointer(file_, page / kSpan)), page % kSpan, false);
        return;
    }
    Bytes changed(row.bytes.begin(), row.bytes.end());
    setBit(MutableBytes(changed).subspan(kInlineHeader), page - row.start(), false);
    replaceMapRow(file_, place_, changed);
}

} // namespace vellums::jet
