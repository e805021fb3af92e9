// Data pages: rows, long values and usage maps all lie in pages of this kind.
//
//   offset  size  holds (Jet 4 and ACE; format.h has the places of Jet 3, which has no stamp)
//        0     1  0x01
//        1     1  1
//        2     2  free bytes between the end of the row table and the lowest row
//        4     4  owner: definition page of the table, the letters LVAL, or 0 (usage maps)
//        8     4  0, or a stamp on the first page of a chain of long-value chunks
//       12     2  number of entries
//       14   2*n  row table: where each row starts
//
// Rows fill the page from its end: row 0 lies at the end, and row r ends where row r-1 starts. Flags
// in the entry: 0x4000 the row has moved and its first four bytes point to it; 0x8000 the far end of
// a moved row; both: deleted.
#pragma once

#include "jet/file/pageFile.h"

namespace vellums::jet {

inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C; // "LVAL"
inline constexpr int kMaxRowsOnPage = 255;
inline constexpr std::size_t kDataHeader = kJet4.dataPage.rowTable;
inline constexpr std::uint16_t kMovedFlag = 0x4000;
inline constexpr std::uint16_t kMovedHereFlag = 0x8000;
inline constexpr std::uint16_t kDeletedFlags = 0xC000;

// Reads one data page. The bytes are not copied.
class DataPage {
public:
    // Throws (damaged file) when the page is no data page or its row table breaks a rule.
    explicit DataPage(PageView page);
    // Of bytes that outlive the object.
    explicit DataPage(ByteView page)
        : DataPage(PageView(page))
    {
    }

    std::uint32_t owner() const { return load<std::uint32_t>(bytes_, 4); }
    int rowCount() const { return rowCount_; }
    std::uint16_t flags(int row) const;
    // The row's bytes as they lie, flags or no flags. Throws (damaged file) for a row that is not there.
    ByteView bytes(int row) const&;
    ByteView bytes(int row) const&& = delete; // they may go with the object
    // The same, keeping the page.
    PageView row(int row) const;
    std::size_t start(int row) const;
    int freeBytes() const { return load<std::uint16_t>(bytes_, 2); }
    // What freeBytes() must be by the row table.
    int countedFreeBytes() const;
    bool hasRoomFor(std::size_t rowLength) const
    {
        return rowCount_ < kMaxRowsOnPage && rowLength + 2 <= static_cast<std::size_t>(freeBytes());
    }
    // Every entry is deleted.
    bool isEmpty() const;

private:
    std::size_t end(int row) const { return row == 0 ? bytes_.size() : start(row - 1); }
    std::size_t entryOffset(int row) const { return rowTable_ + 2 * static_cast<std::size_t>(row); }

    PageView page_;
    ByteView bytes_;       // of it
    std::size_t rowTable_; // where it starts
    int rowCount_;
};

// Changes of one data page. They check the page first and keep free space and row table true.
void initDataPage(MutableBytes page, std::uint32_t owner);
// Adds a row; gives its number. The page must have room.
std::uint8_t appendRow(MutableBytes page, ByteView row, std::uint16_t flags);
// Replaces the content of a row by bytes of any length that fit; the number stays.
void replaceRow(MutableBytes page, int row, ByteView bytes, std::uint16_t flags);
void deleteRow(MutableBytes page, int row);

} // namespace vellums::jet
