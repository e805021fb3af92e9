// Sets of page numbers: the pages that a table, a long-value column or an index owns, and those with free
// space.
//
// A map lies in a row of a data page. Form 0: a start page and a bitmap. Form 1: numbers of pages of
// kind 0x05 that hold the bitmap, 32,736 pages each.
#pragma once

#include "jet/file/pageFile.h"

#include <functional>
#include <vector>

namespace vellums::jet {

class FreePages;

// One usage map, read through the file at each call (nothing is cached).
class UsageMap {
public:
    // `place` is the row that holds the map. Throws (damaged file) when it is none.
    UsageMap(PageFile& file, RowRef place);

    bool contains(PageNo page) const;
    // All pages inside the file, ascending.
    std::vector<PageNo> pages() const;
    // The highest page inside the file that is in the set and below `below`; 0 when there is none.
    PageNo highestBelow(PageNo below) const;
    // Pages of kind 0x05 that the map itself occupies.
    std::vector<PageNo> bitmapPages() const;

    // Adding may change the form of the map and take a page from `free`.
    void add(PageNo page, FreePages& free);
    void remove(PageNo page);

private:
    PageFile& file_;
    RowRef place_;
};

} // namespace vellums::jet
