// Long values: memo texts and OLE data. The row holds twelve bytes, and behind them the value if it is
// short; longer ones lie on pages of their own.
//
//   offset  size  holds
//        0     4  length in bytes (30 bits); bits 31 and 30: 10 inline, 01 single, 00 chained
//        4     4  pointer to a row of a long-value page, or 0
//        8     4  0, or a stamp
//
// Single: the row is the value. Chained: each row starts with the pointer to the next one (0: none).
#pragma once

#include "jet/table/tableDefinition.h"

namespace vellums::jet {

inline constexpr std::size_t kLongValueHeader = 12;
inline constexpr std::size_t kMaxInlineBytes = 64; // before compression
inline constexpr std::size_t kMaxSingleBytes = 4076;
inline constexpr std::size_t kChunkBytes = 4072;
inline constexpr std::size_t kMaxLongValue = (std::size_t{1} << 30) - 1;

// The first eight bytes of what lies in the row, taken apart. Throws (damaged file) where they are fewer.
struct LongValueReference {
    std::size_t length;
    bool inlined; // the value follows in the row
    bool single;  // it is one row; else, when not inlined, a chain
    RowRef first;

    explicit LongValueReference(ByteView bytes);
};

// The bytes of a value. Where they do not lie together, or would not stay, they are put into `scratch`.
// Throws (damaged file) for circles, values that end too early and pointers to other pages.
ByteView readLongValue(const PageFile& file, ByteView reference, Bytes& scratch);

// True for a value whose bytes lie in the row itself.
bool isInline(ByteView reference);

// Builds the reference with the value behind it.
Bytes inlineReference(ByteView value);

// Writes a value onto pages of the column; gives the twelve bytes for the row.
Bytes writeLongValue(PageFile& file, const Column& column, ByteView value);

// Writes the value that a reference of another file leads to, in the form that it has there.
Bytes copyLongValue(const PageFile& from, ByteView reference, PageFile& to, const Column& column);

// Gives the pages of a value back. Nothing to do for an inline one.
void freeLongValue(PageFile& file, const Column& column, ByteView reference);

} // namespace vellums::jet
