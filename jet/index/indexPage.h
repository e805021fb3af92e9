// One page of an index.
//
//   offset  size  holds
//        0     1  page kind: 0x03 node, 0x04 leaf
//        1     1  1
//        2     2  free bytes at the end of the entry area
//        4     4  definition page of the table
//       12     4  previous page of this level, 0: none
//       16     4  next page of this level, 0: none
//       20     4  nodes: tail child, for everything above the last entry
//       24     2  length of the prefix that all entries share
//       26     1  level: 0 leaf, 1 node above leaves, ...
//       27   453  entry mask: bit n is set when an entry ends at offset n of the entry area
//      480  3616  entry area
//
// A leaf entry is a key, three bytes of page number and one of row number, most significant byte
// first: the row's home. A node entry is the same and four bytes more, the child page below it, whose
// entries are not larger than this one. The first entry is stored whole, all later ones without the
// shared prefix, which lies within the key. Entries sort by plain byte comparison.
#pragma once

#include "jet/file/pageFile.h"

#include <cassert>
#include <vector>

namespace vellums::jet {

inline constexpr std::size_t kEntryMask = 27;
inline constexpr std::size_t kEntryArea = 480;
inline constexpr std::size_t kEntryAreaSize = kPageSize - kEntryArea;
inline constexpr std::size_t kRowPointer = 4; // bytes of the row pointer behind a key
inline constexpr std::size_t kChildPointer = 4;
inline constexpr std::size_t kMaxDepth = 16; // levels; no tree that fits a file has more

// Entries in full, one behind the other, in ascending order.
class EntryList {
public:
    // `trailer`: bytes behind the key, 4 on leaves, 8 on nodes.
    explicit EntryList(std::size_t trailer)
        : trailer_(trailer)
    {
    }

    std::size_t size() const { return ends_.size(); }
    bool empty() const { return ends_.empty(); }
    std::size_t start(std::size_t entry) const { return entry == 0 ? 0 : ends_[entry - 1]; }
    ByteView at(std::size_t entry) const
    {
        assert(entry < ends_.size());
        return ByteView(bytes_).subspan(start(entry), ends_[entry] - start(entry));
    }
    // Key and row pointer.
    ByteView bound(std::size_t entry) const
    {
        return at(entry).first(at(entry).size() - (trailer_ - kRowPointer));
    }
    // The first entry whose key and row pointer are not below `bound`; size() when there is none.
    std::size_t lowerBound(ByteView bound) const;
    // The page below a node's entry.
    PageNo child(std::size_t entry) const;

    void add(ByteView entry) { insert(size(), entry); }
    void insert(std::size_t before, ByteView entry);
    void erase(std::size_t entry);
    // The entries from `first` up to `last`, without it.
    EntryList part(std::size_t first, std::size_t last) const;

    // Bytes of the entries from `first` up to `last`, whole.
    std::size_t bytes(std::size_t first, std::size_t last) const { return start(last) - start(first); }
    // The prefix that a page with these entries is written with: none while they fit whole.
    std::size_t prefix(std::size_t first, std::size_t last) const;
    // Bytes they take on a page, written with that prefix.
    std::size_t packed(std::size_t first, std::size_t last) const;
    bool fits() const { return packed(0, size()) <= kEntryAreaSize; }

private:
    std::size_t trailer_;
    Bytes bytes_;
    std::vector<std::size_t> ends_;
};

// A page of an index, to be looked at or changed and written back.
struct IndexPage {
    IndexPage(PageNo number, bool isLeaf)
        : page(number)
        , leaf(isLeaf)
        , entries(isLeaf ? kRowPointer : kRowPointer + kChildPointer)
    {
    }

    PageNo page;
    bool leaf;
    std::uint8_t level = 0;
    PageNo previous = 0;
    PageNo next = 0;
    PageNo tail = 0;
    EntryList entries;

    // The child at a slot: an entry's or, behind the last one, the tail.
    PageNo child(std::size_t slot) const { return slot < entries.size() ? entries.child(slot) : tail; }
    // The slot whose child holds everything up to `bound`. A node without a tail serves what lies above
    // its last entry there as well.
    std::size_t slotFor(ByteView bound) const;
};

// Throws (damaged file) when the page is no index page of the table or breaks a rule of the layout.
IndexPage readIndexPage(const PageFile& file, PageNo page, PageNo table);

// Writes the whole page. The entries must fit.
void writeIndexPage(MutableBytes bytes, const IndexPage& page, PageNo table);

// Key and row pointer as they stand in a leaf.
Bytes leafEntry(ByteView key, RowRef row);
Bytes nodeEntry(ByteView bound, PageNo child);
// The row of a leaf entry.
RowRef rowOf(ByteView leafEntry);
// The key in key and row pointer.
inline ByteView keyOf(ByteView bound)
{
    return bound.first(bound.size() - kRowPointer);
}

std::strong_ordering compareBytes(ByteView a, ByteView b);

} // namespace vellums::jet
