#include "jet/table/pageSpace.h"

namespace vellums::jet {
namespace {

constexpr int kPagesTried = 6;
constexpr int kHardlyAnySpace = 64;

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
    PageNo page = pageWithRoom(file, owner, row.size());
    if (page == 0)
        page = newPage(file, owner, true);
    return {page, appendRow(writablePage(file, owner, page), row, flags)};
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
    FreePages(file).release(row.page, 0x09);
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
