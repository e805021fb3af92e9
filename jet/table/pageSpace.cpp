// Finding room for rows. The map of pages with free space is a hint: other programs leave pages in it that
// are full, and pages out of it that are not. So the page's own count of free bytes decides, and only the
// highest few of the map are tried, most likely the latest; a page with hardly any space is taken out of the
// map on the way, so that a table that grows usually looks at one or two pages for a row. None of them: a
// new page.
//
// The other direction is as cheap: a page that gets space is put into the map, one that loses its last row
// is given back.
#include "jet/table/pageSpace.h"

#include "jet/file/maps/freePages.h"
#include "jet/file/maps/usageMap.h"

#include <cassert>

namespace vellums::jet {
namespace {

constexpr int kPagesTried = 6;
constexpr int kHardlyAnySpace = 64; // bytes

PageNo newPage(PageFile& file, const PageOwner& owner, bool shared)
{
    FreePages free(file);
    const PageNo page = free.allocate();
    initDataPage(file.writeNew(page), owner.owner);
    UsageMap(file, owner.ownedMap).add(page, free);
    if (shared && owner.freeMap.page != 0)
        UsageMap(file, owner.freeMap).add(page, free);
    return page;
}

// A page of the free-space map that has the room; 0: none among the highest few.
PageNo pageWithRoom(PageFile& file, const PageOwner& owner, std::size_t length)
{
    if (owner.freeMap.page == 0)
        return 0;
    UsageMap map(file, owner.freeMap);
    PageNo page = file.pageCount();
    for (int tried = 0; tried < kPagesTried; ++tried) {
        page = map.highestBelow(page);
        if (page == 0)
            return 0;
        const DataPage data(file.read(page));
        if (data.owner() == owner.owner && data.hasRoomFor(length))
            return page;
        if (data.freeBytes() < kHardlyAnySpace || data.rowCount() >= kMaxRowsOnPage)
            map.remove(page);
    }
    return 0;
}

} // namespace

// The count of free bytes is checked against the row table here, once for all changes of a page: with a
// wrong one a row could be written over others.
MutableBytes writablePage(PageFile& file, const PageOwner& owner, PageNo page)
{
    const DataPage data(file.read(page));
    if (data.owner() != owner.owner)
        throwDamaged(u"a row lies on a page of another table");
    if (data.freeBytes() != data.countedFreeBytes())
        throwDamaged(u"a page counts its free space wrong");
    return file.write(page);
}

RowRef placeRow(PageFile& file, const PageOwner& owner, ByteView row, std::uint16_t flags)
{
    assert(kDataHeader + 2 + row.size() <= kPageSize);
    PageNo page = pageWithRoom(file, owner, row.size());
    if (page == 0)
        page = newPage(file, owner, true);
    return {page, appendRow(writablePage(file, owner, page), row, flags)};
}

RowRef placeNext(PageFile& file, const PageOwner& owner, ByteView row, PageNo& last)
{
    if (last == 0 || !DataPage(file.read(last)).hasRoomFor(row.size())) {
        if (last != 0 && owner.freeMap.page != 0 && DataPage(file.read(last)).freeBytes() < kHardlyAnySpace)
            UsageMap(file, owner.freeMap).remove(last);
        last = newPage(file, owner, true);
    }
    return {last, appendRow(writablePage(file, owner, last), row, 0)};
}

RowRef placeAlone(PageFile& file, const PageOwner& owner, ByteView row)
{
    const PageNo page = newPage(file, owner, false);
    return {page, appendRow(writablePage(file, owner, page), row, 0)};
}

void removeRow(PageFile& file, const PageOwner& owner, RowRef row)
{
    const MutableBytes page = writablePage(file, owner, row.page);
    deleteRow(page, row.row);
    if (!DataPage(page).isEmpty()) {
        noteFreeSpace(file, owner, row.page);
        return;
    }
    UsageMap(file, owner.ownedMap).remove(row.page);
    if (owner.freeMap.page != 0)
        UsageMap(file, owner.freeMap).remove(row.page);
    FreePages(file).release(row.page, kFreedData);
}

void noteFreeSpace(PageFile& file, const PageOwner& owner, PageNo page)
{
    if (owner.freeMap.page == 0 || DataPage(file.read(page)).freeBytes() < kHardlyAnySpace)
        return;
    UsageMap map(file, owner.freeMap);
    if (map.contains(page))
        return;
    FreePages free(file);
    map.add(page, free);
}

} // namespace vellums::jet
