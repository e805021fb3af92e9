// Room for rows: on the pages that a table or a long-value column owns.
#pragma once

#include "jet/file/dataPage.h"

namespace vellums::jet {

// Who owns the pages, and the two maps: all owned pages, and those with free space (page 0: no such
// map, every row gets a page of its own).
struct PageOwner {
    std::uint32_t owner = 0; // definition page, or kLongValueOwner
    RowRef ownedMap;
    RowRef freeMap;
};

// Puts a row on a page with room, or on a new one.
RowRef placeRow(PageFile& file, const PageOwner& owner, ByteView row, std::uint16_t flags);

// Puts a row behind the one placed before, on its page `last` or on a new one, so that rows keep their order.
// `last` is 0 at first, and becomes the page of the row.
RowRef placeNext(PageFile& file, const PageOwner& owner, ByteView row, PageNo& last);

// Puts a row on a new page that takes no others (row 0); the page is in the map of owned pages only.
RowRef placeAlone(PageFile& file, const PageOwner& owner, ByteView row);

// Deletes a row; gives its page back when it was the last one. Throws (damaged file) when the page has
// another owner.
void removeRow(PageFile& file, const PageOwner& owner, RowRef row);

// After a row became shorter: its page may take others again.
void noteFreeSpace(PageFile& file, const PageOwner& owner, PageNo page);

// A page that may be changed: of this owner, with a true count of its free bytes.
MutableBytes writablePage(PageFile& file, const PageOwner& owner, PageNo page);

} // namespace vellums::jet
