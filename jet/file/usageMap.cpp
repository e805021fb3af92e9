// Maps of pages: reading them bit by bit, and keeping them in a form that holds their pages.
//
//   form 0   00 | start page, 4 bytes | bits: page start + i is bit i % 8 of byte i / 8
//   form 1   01 | page of bits for pages 0 to 32735, 4 bytes | the same for the next 32736 | ...
//
// An inline map covers a window of pages. When a page outside is added, the window moves so that all pages
// of the set are inside; where no window is large enough the row becomes a map of form 1, at its present
// length, and the pages are added again. It never turns back.
//
// The map of free pages is different: a set bit means free, and what it does not cover, behind the end of
// the file, is free as well. So it is lengthened instead of moved, by ones, while page 1 has room, and
// turned into form 1 after that. Taking the lowest free page always ends: either a bit is found, or the map
// is made to cover the first page behind it. Bits beyond the end of the file mean pages that do not exist
// yet.
//
// Nothing is kept between calls, because a row of a map moves when another one on its page grows. All
// numbers come from the file: a page beyond its end counts as none.
#include "jet/file/usageMap.h"

#include "jet/file/dataPage.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::size_t kInlineHeader = 5; // form, start page
constexpr std::size_t kBitmapHeader = 4;
constexpr std::uint32_t kSpan = (kPageSize - kBitmapHeader) * 8; // pages on one page of kind 0x05
constexpr RowRef kGlobalMap = {1, 0};

bool bitAt(ByteView bits, std::size_t index)
{
    return index / 8 < bits.size() && (std::to_integer<unsigned>(bits[index / 8]) >> (index % 8) & 1) != 0;
}

void setBit(MutableBytes bits, std::size_t index, bool on)
{
    assert(index / 8 < bits.size());
    const auto mask = static_cast<std::byte>(1u << (index % 8));
    bits[index / 8] = on ? bits[index / 8] | mask : bits[index / 8] & ~mask;
}

// Calls back with the index of every set bit, ascending; the callback returns false to stop. Eight bytes at
// a time as one little-endian number, in which `word & (word - 1)` takes the lowest bit away.
template <typename Callback>
bool eachBit(ByteView bits, Callback&& callback)
{
    for (std::size_t i = 0; i < bits.size(); i += 8) {
        const std::size_t length = std::min<std::size_t>(8, bits.size() - i);
        std::uint64_t word = 0;
        std::memcpy(&word, bits.data() + i, length);
        for (; word != 0; word &= word - 1)
            if (!callback(i * 8 + static_cast<std::size_t>(std::countr_zero(word))))
                return false;
    }
    return true;
}

// The highest set bit below `limit`.
std::optional<std::size_t> highestBit(ByteView bits, std::size_t limit)
{
    limit = std::min(limit, bits.size() * 8);
    while (limit > 0) {
        if (limit % 64 == 0 && limit >= 64 && load<std::uint64_t>(bits, limit / 8 - 8) == 0) {
            limit -= 64;
            continue;
        }
        if (bitAt(bits, --limit))
            return limit;
    }
    return std::nullopt;
}

// The row of a map, taken apart. The page of the map of free pages names itself as its owner, all other
// pages of maps name 0.
struct MapRow {
    DataPage home; // the page it lies on
    ByteView bytes;

    MapRow(const PageFile& file, RowRef place)
        : home(file.read(place.page))
        , bytes(home.bytes(place.row))
    {
        if (home.owner() != (place.page == 1 ? 1u : 0u))
            throwDamaged(u"a usage map lies in a page of rows");
        if (bytes.empty() || form() > 1 || (form() == 0 && bytes.size() < kInlineHeader))
            throwDamaged(u"a usage map has an unknown form");
    }
    unsigned form() const { return std::to_integer<unsigned>(bytes[0]); }
    PageNo start() const { return load<std::uint32_t>(bytes, 1); }
    ByteView bits() const { return bytes.subspan(kInlineHeader); }
    std::size_t pointerCount() const { return (bytes.size() - 1) / 4; }
    // 0 where no page exists for the span, or where it lies outside the file.
    PageNo pointer(const PageFile& file, std::size_t span) const
    {
        const PageNo page = span < pointerCount() ? load<std::uint32_t>(bytes, 1 + 4 * span) : 0;
        return page < file.pageCount() ? page : 0;
    }
};

PageView bitmapOf(const PageFile& file, PageNo page)
{
    const PageView view = file.read(page);
    if (view.bytes()[0] != std::byte{5})
        throwDamaged(u"a page of a usage map is of another kind");
    return view.part(kBitmapHeader, kPageSize - kBitmapHeader);
}

bool bitmapBitAt(const PageFile& file, PageNo page, std::size_t index)
{
    const PageView bits = bitmapOf(file, page);
    return bitAt(bits, index);
}

MutableBytes writableBitmap(PageFile& file, PageNo page)
{
    bitmapOf(file, page);
    return file.write(page).subspan(kBitmapHeader);
}

void replaceMapRow(PageFile& file, RowRef place, ByteView row)
{
    replaceRow(file.write(place.page), place.row, row, 0);
}

std::vector<PageNo> referencedPages(const PageFile& file, RowRef place)
{
    std::vector<PageNo> pages;
    const MapRow row(file, place);
    if (row.form() == 1)
        for (std::size_t i = 0; i < row.pointerCount(); ++i)
            if (const PageNo page = row.pointer(file, i); page != 0)
                pages.push_back(page);
    return pages;
}

void initBitmapPage(MutableBytes page, std::byte fill)
{
    std::fill(page.begin(), page.end(), fill);
    store<std::uint32_t>(page, 0, 0x0105);
}

} // namespace

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
    const PageNo bitmap = row.pointer(file_, page / kSpan);
    return bitmap != 0 && bitmapBitAt(file_, bitmap, page % kSpan);
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
            collect(std::uint64_t{i} * kSpan, bits);
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
        const auto base = static_cast<PageNo>(i * kSpan);
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
    const PageNo bitmap = row.pointer(file_, page / kSpan);
    return bitmap != 0 && bitmapBitAt(file_, bitmap, page % kSpan);
}

std::vector<PageNo> FreePages::bitmapPages() const
{
    return referencedPages(file_, kGlobalMap);
}

} // namespace vellums::jet
