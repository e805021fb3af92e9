// The map of free pages is like any other, but for this: a set bit means free, and what it does not cover,
// behind the end of the file, is free as well. So it is lengthened instead of moved, by ones, while page 1
// has room, and turned into form 1 after that. Taking the lowest free page always ends: either a bit is
// found, or the map is made to cover the first page behind it. Bits beyond the end of the file mean pages
// that do not exist yet.
#include "jet/file/maps/freePages.h"

#include "jet/file/maps/mapRow.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr RowRef kGlobalMap = {1, 0};

} // namespace

FreePages::FreePages(PageFile& file)
    : file_(file)
{
    const MapRow row(file, kGlobalMap);
    (void)row;
}

namespace {

// The lowest free page: of the map's bits, or the first page behind what an inline map covers, or of a span
// that has no page of bits yet. The last two are not `covered`: the map must grow before they are taken.
struct Lowest {
    PageNo page = 0;
    bool covered = true; // the map has a bit for it
};

std::optional<PageNo> lowestSet(ByteView bits, PageNo base)
{
    std::optional<PageNo> found;
    eachBit(bits, [&](std::size_t bit) {
        found = base + static_cast<PageNo>(bit);
        return *found == 0; // page 0 never is free
    });
    return found && *found != 0 ? found : std::nullopt;
}

Lowest lowestFree(const PageFile& file)
{
    const MapRow row(file, kGlobalMap);
    if (row.form() == 0) {
        if (const auto page = lowestSet(row.bits(), row.start()))
            return {*page, true};
        const PageNo end = row.start() + static_cast<PageNo>(row.bits().size() * 8);
        return {std::max(end, file.pageCount()), false};
    }
    for (std::size_t span = 0; span < row.pointerCount(); ++span) {
        const auto base = static_cast<PageNo>(span * kSpan);
        const PageNo bitmap = row.pointer(file, span);
        if (bitmap == 0)
            return {std::max(base, std::min(file.pageCount(), base + kSpan - 1)), false};
        const PageView bits = bitmapOf(file, bitmap);
        if (const auto page = lowestSet(bits, base))
            return {*page, true};
    }
    throw Error(3001, kFail, u"Invalid argument. The database has reached its largest size of 2 GB.");
}

void setGlobalBit(PageFile& file, PageNo page, bool isFree);

// Makes a page for one span of a global map in reference form, at the end of the file. What lies inside
// the file counts as used: nothing tells that it is free, and a lost page harms nobody.
void addGlobalSpan(PageFile& file, std::size_t span)
{
    const PageNo page = file.pageCount();
    initBitmapPage(file.writeNew(page), std::byte{0xFF});
    const MapRow now(file, kGlobalMap);
    Bytes row(now.bytes.begin(), now.bytes.end());
    store<std::uint32_t>(row, 1 + 4 * span, page);
    replaceMapRow(file, kGlobalMap, row);
    const MutableBytes bits = writableBitmap(file, page);
    const std::size_t base = span * kSpan;
    for (std::size_t i = 0; i < kSpan && base + i <= page; ++i)
        setBit(bits, i, false);
    setGlobalBit(file, page, false);
}

// Turns the inline map into one in reference form with a page for every span of the file.
void makeGlobalReference(PageFile& file)
{
    const MapRow old(file, kGlobalMap);
    const PageNo start = old.start();
    const Bytes bits(old.bits().begin(), old.bits().end());
    const PageNo pagesBefore = file.pageCount();

    Bytes row(kMapRowBytes, std::byte{0});
    row[0] = std::byte{1};
    replaceMapRow(file, kGlobalMap, row);
    for (std::size_t span = 0; span <= file.pageCount() / kSpan; ++span)
        addGlobalSpan(file, span);
    for (std::size_t bit = 0; bit < bits.size() * 8; ++bit) {
        const std::size_t page = start + bit;
        if (page < pagesBefore || !bitAt(bits, bit)) // used bits beyond the end stay used
            setGlobalBit(file, static_cast<PageNo>(page), bitAt(bits, bit));
    }
}

// Makes the map cover a page behind its present range, 32 pages at a time as other programs do. New bits say
// free, but for pages inside the file, of which nothing is known.
void growGlobalMap(PageFile& file, PageNo page)
{
    const MapRow row(file, kGlobalMap);
    if (row.form() == 1) {
        addGlobalSpan(file, page / kSpan);
        return;
    }
    const std::size_t bytesNow = row.bits().size();
    const std::size_t grow = (page - row.start()) / 32 * 4 + 4 - bytesNow;
    if (static_cast<std::size_t>(DataPage(file.read(1)).freeBytes()) < grow) {
        makeGlobalReference(file);
        return;
    }
    Bytes longer(row.bytes.begin(), row.bytes.end());
    longer.resize(longer.size() + grow, std::byte{0xFF});
    for (std::size_t bit = bytesNow * 8; row.start() + bit < file.pageCount(); ++bit)
        setBit(MutableBytes(longer).subspan(kInlineHeader), bit, false);
    replaceMapRow(file, kGlobalMap, longer);
}

// Sets or clears the bit of a page; nothing where the map has none.
void setGlobalBit(PageFile& file, PageNo page, bool isFree)
{
    const MapRow row(file, kGlobalMap);
    if (row.form() == 1) {
        if (const PageNo bitmap = row.pointer(file, page / kSpan); bitmap != 0)
            setBit(writableBitmap(file, bitmap), page % kSpan, isFree);
        return;
    }
    if (page < row.start() || (page - row.start()) / 8 >= row.bits().size())
        return;
    const DataPage map(file.read(kGlobalMap.page));
    const std::size_t at = map.start(kGlobalMap.row) + kInlineHeader;
    setBit(file.write(kGlobalMap.page).subspan(at), page - row.start(), isFree);
}

} // namespace

// At first the map says that every page inside the file is used, as growing it does; then what is free is let
// go.
void FreePages::reset(PageFile& file, const std::vector<bool>& used)
{
    constexpr std::size_t kFirstPages = (kMapRowBytes - kInlineHeader) * 8;
    const PageNo pages = file.pageCount();
    assert(used.size() >= pages);
    Bytes row(kMapRowBytes, std::byte{0xFF});
    std::fill_n(row.begin(), kInlineHeader, std::byte{0});
    for (std::size_t page = 0; page < std::min<std::size_t>(pages, kFirstPages); ++page)
        setBit(MutableBytes(row).subspan(kInlineHeader), page, false);
    replaceMapRow(file, kGlobalMap, row);
    if (pages > kFirstPages)
        growGlobalMap(file, pages - 1);
    for (PageNo page = 1; page < pages; ++page)
        if (!used[page])
            setGlobalBit(file, page, true);
}

PageNo FreePages::allocate()
{
    Lowest lowest = lowestFree(file_);
    while (!lowest.covered) {
        growGlobalMap(file_, lowest.page);
        lowest = lowestFree(file_);
    }
    file_.writeNew(lowest.page);
    setGlobalBit(file_, lowest.page, false);
    return lowest.page;
}

// The content stays, but for the first byte: whoever still points here finds a page of another kind.
void FreePages::release(PageNo page, std::uint8_t kind)
{
    assert(page != 0 && page < file_.pageCount());
    if (kind != 0)
        file_.write(page)[0] = static_cast<std::byte>(kind);
    setGlobalBit(file_, page, true);
}

bool FreePages::isFree(PageNo page) const
{
    if (page >= file_.pageCount())
        return false;
    const MapRow row(file_, kGlobalMap);
    if (row.form() == 0)
        return page >= row.start() && bitAt(row.bits(), page - row.start());
    const PageNo bitmap = row.pointer(file_, page / spanOf(file_));
    return bitmap != 0 && bitmapBitAt(file_, bitmap, page % spanOf(file_));
}

std::vector<PageNo> FreePages::bitmapPages() const
{
    return referencedPages(file_, kGlobalMap);
}

} // namespace vellums::jet
