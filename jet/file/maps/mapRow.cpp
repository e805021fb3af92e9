#include "jet/file/maps/mapRow.h"

#include "jet/file/maps/freePages.h"

#include <cassert>

namespace vellums::jet {

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

MapRow::MapRow(const PageFile& file, RowRef place)
    : home(file.read(place.page))
    , bytes(home.bytes(place.row))
{
    if (home.owner() != (place.page == 1 ? 1u : 0u))
        throwDamaged(u"a usage map lies in a page of rows");
    if (bytes.empty() || form() > 1 || (form() == 0 && bytes.size() < kInlineHeader))
        throwDamaged(u"a usage map has an unknown form");
}

PageNo MapRow::pointer(const PageFile& file, std::size_t span) const
{
    const PageNo page = span < pointerCount() ? load<std::uint32_t>(bytes, 1 + 4 * span) : 0;
    return page < file.pageCount() ? page : 0;
}

PageView bitmapOf(const PageFile& file, PageNo page)
{
    const PageView view = file.read(page);
    if (view.bytes()[0] != std::byte{5})
        throwDamaged(u"a page of a usage map is of another kind");
    return view.part(kBitmapHeader, view.size() - kBitmapHeader);
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

PageNo pageForMaps(PageFile& file, const std::vector<PageNo>& candidates, int count)
{
    for (const PageNo page : candidates) {
        const DataPage maps(file.read(page));
        if (maps.owner() == 0 && maps.freeBytes() >= count * static_cast<int>(kMapRowBytes + 2) &&
            maps.rowCount() <= kMaxRowsOnPage - count)
            return page;
    }
    const PageNo page = FreePages(file).allocate();
    initDataPage(file.writeNew(page), 0);
    return page;
}

RowRef addMapRow(PageFile& file, PageNo page)
{
    const Bytes empty(kMapRowBytes);
    return {page, appendRow(file.write(page), empty, 0)};
}

void removeMapRow(PageFile& file, RowRef place)
{
    deleteRow(file.write(place.page), place.row);
    if (DataPage(file.read(place.page)).isEmpty())
        FreePages(file).release(place.page, kFreedData);
}

} // namespace vellums::jet
