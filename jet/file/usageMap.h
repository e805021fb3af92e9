// Sets of page numbers: the pages that a table, a long-value column or an index owns, those with free
// space, and the free pages of the file.
//
// A map lies in a row of a data page. Form 0: a start page and a bitmap. Form 1: numbers of pages of
// kind 0x05 that hold the bitmap, 32,736 pages each.
#pragma once

#include "jet/file/pageFile.h"

#include <functional>
#include <vector>

namespace vellums::jet {

// Bytes of the row of a fresh inline map: its form, its start and the bits of 512 pages.
inline constexpr std::size_t kMapRowBytes = 69;

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

// The free pages of the whole file: page 1, row 0. A set bit means free.
class FreePages {
public:
    explicit FreePages(PageFile& file);

    // The lowest free page, from now on not free; the file grows where it lies beyond the end. The
    // page is all zeros and to be written in full.
    PageNo allocate();
    // Gives a page back; its first byte becomes `kind` (0x08 definition, 0x09 data), other pages keep
    // theirs (`kind` 0).
    void release(PageNo page, std::uint8_t kind);
    // Inside the file and free.
    bool isFree(PageNo page) const;
    // Pages of kind 0x05 of the map itself.
    std::vector<PageNo> bitmapPages() const;

private:
    PageFile& file_;
};

} // namespace vellums::jet
