// The row that holds a usage map, and the bits in it: what UsageMap and FreePages share.
//
//   form 0   00 | start page, 4 bytes | bits: page start + i is bit i % 8 of byte i / 8
//   form 1   01 | page of bits for pages 0 to 32735, 4 bytes | the same for the next 32736 | ...
//            (Jet 3: 16352)
//
// All numbers come from the file: a page beyond its end counts as none.
#pragma once

#include "jet/file/dataPage.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <vector>

namespace vellums::jet {

// Bytes of the row of a fresh inline map: its form, its start and the bits of 512 pages.
inline constexpr std::size_t kMapRowBytes = 69;
inline constexpr std::size_t kInlineHeader = 5; // form, start page
inline constexpr std::size_t kBitmapHeader = 4;
inline constexpr std::uint32_t kSpan = kJet4.mapSpan(); // pages on one page of kind 0x05
// The same for a file that may be of Jet 3.
inline std::uint32_t spanOf(const PageFile& file)
{
    return static_cast<std::uint32_t>(file.header().format->mapSpan());
}

bool bitAt(ByteView bits, std::size_t index); // false behind the end
void setBit(MutableBytes bits, std::size_t index, bool on);
// The highest set bit below `limit`.
std::optional<std::size_t> highestBit(ByteView bits, std::size_t limit);

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

// The row of a map, taken apart. The page of the map of free pages names itself as its owner, all other
// pages of maps name 0.
struct MapRow {
    DataPage home; // the page it lies on
    ByteView bytes;

    // Throws (damaged file) where there is no map.
    MapRow(const PageFile& file, RowRef place);

    unsigned form() const { return std::to_integer<unsigned>(bytes[0]); }
    PageNo start() const { return load<std::uint32_t>(bytes, 1); }
    ByteView bits() const { return bytes.subspan(kInlineHeader); }
    std::size_t pointerCount() const { return (bytes.size() - 1) / 4; }
    // 0 where no page exists for the span, or where it lies outside the file.
    PageNo pointer(const PageFile& file, std::size_t span) const;
};

// The bits of a page of kind 0x05. All throw (damaged file) where it is of another kind.
PageView bitmapOf(const PageFile& file, PageNo page);
bool bitmapBitAt(const PageFile& file, PageNo page, std::size_t index);
MutableBytes writableBitmap(PageFile& file, PageNo page);
void initBitmapPage(MutableBytes page, std::byte fill);

// A page with room for so many fresh maps: the first of these pages of maps that has it, else a new one.
PageNo pageForMaps(PageFile& file, const std::vector<PageNo>& candidates, int count);
// Puts an empty map on such a page.
RowRef addMapRow(PageFile& file, PageNo page);
// Deletes the row of a map, and gives its page back when it was the last one there. The pages that hold the
// bits of a map of form 1 are the caller's.
void removeMapRow(PageFile& file, RowRef place);

void replaceMapRow(PageFile& file, RowRef place, ByteView row);
// The pages of kind 0x05 that a map of form 1 names; none of form 0.
std::vector<PageNo> referencedPages(const PageFile& file, RowRef place);

} // namespace vellums::jet
